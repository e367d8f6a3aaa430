#include "tools/district/make/generator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_set>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "tools/district/make/codes.h"
#include "tools/district/make/dress.h"
#include "tools/district/make/names.h"
#include "tools/district/travel/timetable.h"

namespace tools::district {

namespace {

using base::Date;

constexpr std::int64_t RunsPerSchool = 30;   ///< each way
constexpr std::int64_t StopsPerRun = 14;     ///< on average, the school apart
constexpr std::int64_t StudentsPerRun = 20;  ///< each way; both ways make 10 a run
constexpr std::int64_t TurnsPerRun = 3;
constexpr std::int64_t RunsPerGarage = 4000;

struct Tier {
    std::string_view type;
    Date bell;
    Date dismissal;
};
constexpr std::array<Tier, 3> Tiers = {{{"HS", Date{26'400}, Date{51'600}},
                                        {"MS", Date{29'700}, Date{54'900}},
                                        {"ELEM", Date{33'000}, Date{58'200}}}};

class Generator {
public:
    Generator(std::int64_t runs, std::uint64_t seed) : sizes_(Sizes::forRuns(runs)), random_(seed) {
        district_.name = "Generated School District";
        district_.maxRideMinutes = 40;
        district_.backToGarageMinutes = 90;
        district_.asOf = Date::of(2026, 1, 30, 12);
        district_.logEntries = sizes_.logEntries;
        district_.seed = seed;
    }

    District build() {
        addSchools();
        addGarages();
        addMornings();
        addTurnPoints();
        addAfternoons();
        assignRoutes();
        staffRoutes(district_, random_);
        recordFindings(district_);
        addLooseVisits();
        addTravels();
        return std::move(district_);
    }

private:
    [[nodiscard]] std::int64_t mornings() const { return (sizes_.runs + 1) / 2; }

    Stop& add(Stop stop) {
        stop.id = static_cast<std::int64_t>(district_.stops.size()) + 1;
        const Town& town = townOf(stop.at.x > side_ / 2, stop.at.y > side_ / 2);
        stop.location = town.location;
        stop.address = addressAt(stop.at);
        if (stop.stopId.empty()) {
            stop.stopId = fmt::format("{:06}", stop.id);
        }
        district_.stops.push_back(std::make_unique<Stop>(std::move(stop)));
        return *district_.stops.back();
    }

    Point somewhere(double margin) {
        return {random_.uniform(margin, side_ - margin), random_.uniform(margin, side_ - margin)};
    }

    void addSchools() {
        const std::int64_t count = (mornings() + RunsPerSchool - 1) / RunsPerSchool;
        side_ = 40 * FeetPerMile * std::sqrt(std::max(1.0, static_cast<double>(count) / 60));
        for (std::int64_t i = 0; i < count; ++i) {
            const Tier& tier = Tiers[static_cast<std::size_t>(i) % Tiers.size()];
            const auto [code, name] = schoolName(static_cast<std::size_t>(i), tier.type);
            const Point at = somewhere(7 * FeetPerMile);
            const Stop& stop = add({.stopId = code,
                                    .type = data::stoptype::School,
                                    .description = name,
                                    .school = code,
                                    .at = at});
            const std::int64_t shift = random_.between(0, 4) * 300;
            district_.schools.push_back(
                std::make_unique<School>(School{.code = code,
                                                .name = name,
                                                .type = std::string(tier.type),
                                                .bell = tier.bell.plusSeconds(shift),
                                                .dismissal = tier.dismissal.plusSeconds(shift),
                                                .stop = stop.id,
                                                .at = at,
                                                .active = !random_.chance(2)}));
        }
    }

    void addGarages() {
        garages_ = std::max<std::int64_t>(1, sizes_.runs / RunsPerGarage);
        firstGarage_ = static_cast<std::int64_t>(district_.stops.size()) + 1;
        for (std::int64_t i = 1; i <= garages_; ++i) {
            add({.stopId = fmt::format("GARAGE{}", i),
                 .type = data::stoptype::Garage,
                 .description = fmt::format("Garage {}", i),
                 .at = somewhere(10 * FeetPerMile)});
        }
    }

    [[nodiscard]] Stop& stop(std::int64_t id) {
        return *district_.stops[static_cast<std::size_t>(id) - 1];
    }

    [[nodiscard]] Visit boarding(const Stop& at, int students) {
        return {.stop = &at,
                .students = students,
                .loadMinutes = boardingMinutes(students),
                .rightHand = servedFromTheRight(at, random_),
                .active = at.active};
    }

    [[nodiscard]] Visit atSchool(const School& school) {
        return {.stop = &stop(school.stop),
                .loadMinutes = schoolMinutes(random_.chance(50) ? 54 : 66)};
    }

    [[nodiscard]] Run runFor(const School& school, std::string_view tripType, std::int64_t number) {
        Run run;
        run.id = fmt::format("{}{:06}", tripType == triptype::Morning ? "A" : "P", number + 1);
        run.active = !random_.chance(3);
        run.school = school.code;
        run.tripType = tripType;
        run.family = school.type;
        run.location = stop(school.stop).location;
        run.overfill = random_.chance(10) ? 3 : 0;
        run.regenerate = random_.chance(5);
        run.fridays = !random_.chance(5);
        run.audit = auditBefore(district_.asOf, random_);
        return run;
    }

    /// A figure that is `mean` on average: what one run has more, the next one has less.
    class Varied {
    public:
        Varied(std::int64_t mean, std::int64_t most) : mean_(mean), most_(most) {}

        std::int64_t of(std::int64_t number, std::int64_t count, Random& random) {
            if (number % 2 == 0) {
                more_ = number + 1 < count ? random.between(-most_, most_) : 0;
                return mean_ + more_;
            }
            return mean_ - more_;
        }

    private:
        std::int64_t mean_;
        std::int64_t most_;
        std::int64_t more_ = 0;
    };

    /// How many of a run's students board at each of its stops.
    std::vector<int> boardings(std::int64_t stops, std::int64_t students) {
        std::vector<int> counts(static_cast<std::size_t>(stops));
        for (std::int64_t i = 0; i < students; ++i) {
            ++counts[random_.below(counts.size())];
        }
        return counts;
    }

    void addMornings() {
        for (std::int64_t i = 0; i < mornings(); ++i) {
            const School& to = *district_.schools[static_cast<std::size_t>(i / RunsPerSchool)];
            Run run = runFor(to, triptype::Morning, i);
            run.bell = to.bell;
            run.students = static_cast<int>(students_.of(i, mornings(), random_));
            const std::int64_t stops = stops_.of(i, mornings(), random_);
            const auto counts = boardings(stops, run.students);
            const Point far{to.at.x + random_.uniform(-6, 6) * FeetPerMile,
                            to.at.y + random_.uniform(-6, 6) * FeetPerMile};
            for (std::size_t k = 0; k < counts.size(); ++k) {
                const Stop& at =
                    addStop(to, far, static_cast<double>(k) / static_cast<double>(stops));
                addStudents(district_, to, at, counts[k], random_);
                run.visits.push_back(boarding(at, counts[k]));
            }
            run.visits.push_back(atSchool(to));
            run.description =
                fmt::format("{} from {}", to.name, streetName(run.visits.front().stop->at.y));
            district_.runs.push_back(std::move(run));
        }
    }

    /// A stop at that share of the way from the far end to the school.
    const Stop& addStop(const School& to, Point far, double share) {
        const Point at{
            far.x + (to.at.x - far.x) * share + random_.uniform(-0.15, 0.15) * FeetPerMile,
            far.y + (to.at.y - far.y) * share + random_.uniform(-0.15, 0.15) * FeetPerMile};
        const bool placed = !random_.chance(0.5);
        return add({.type = data::stoptype::Regular,
                    .description = placed ? cornerAt(at) : "Not yet found on the map",
                    .at = placed ? at : Point{},
                    .placed = placed,
                    .active = !random_.chance(1),
                    .rightSide = random_.chance(12)});
    }

    /// Turn points fill up the number of stops; each serves several runs of its neighbourhood.
    void addTurnPoints() {
        firstTurn_ = static_cast<std::int64_t>(district_.stops.size());
        turns_ = std::max<std::int64_t>(1, sizes_.stops - firstTurn_);
        for (std::int64_t i = 0; i < turns_; ++i) {
            const auto run = static_cast<std::size_t>(i * mornings() / turns_);
            const auto& visits = district_.runs[run].visits;
            const Stop& near = *visits[visits.size() / 2].stop;
            const Point at{near.at.x + 700, near.at.y};
            add({.type = data::stoptype::Directional,
                 .description = "Turn at " + cornerAt(at),
                 .at = at});
        }
        for (std::int64_t i = 0; i < mornings(); ++i) {
            Run& run = district_.runs[static_cast<std::size_t>(i)];
            addTurns(run, i);
            setLegs(run, true);
            const School& to = *district_.schools[static_cast<std::size_t>(i / RunsPerSchool)];
            setTimes(run, Anchor::End, to.bell.plusSeconds(-random_.between(5, 20) * 60));
        }
    }

    void addTurns(Run& run, std::int64_t number) {
        const std::int64_t first = number * turns_ / mornings();
        const auto stops = static_cast<std::int64_t>(run.visits.size());
        for (std::int64_t i = 0; i < TurnsPerRun; ++i) {
            const std::int64_t id = firstTurn_ + 1 + (first + i) % turns_;
            const std::int64_t place = (i + 1) * stops / (TurnsPerRun + 1) + i;
            run.visits.insert(run.visits.begin() + place, Visit{.stop = &stop(id)});
        }
    }

    void addAfternoons() {
        for (std::int64_t i = 0; i < sizes_.runs - mornings(); ++i) {
            const School& from = *district_.schools[static_cast<std::size_t>(i / RunsPerSchool)];
            Run run = runFor(from, triptype::Afternoon, i);
            const Run& morning = district_.runs[static_cast<std::size_t>(i)];
            run.pickup = false;
            run.bell = from.dismissal;
            run.description =
                fmt::format("{} to {}", from.name, streetName(morning.visits.front().stop->at.y));
            const Date leaves = from.dismissal.plusSeconds(random_.between(5, 15) * 60);
            if (random_.chance(0.5)) {
                leaveEmpty(run, morning);
                setTimes(run, Anchor::Start, leaves);
            } else {
                fillBackwards(run, morning, from);
                setLegs(run, true);
                setTimes(run, Anchor::Start, leaves);
            }
            district_.runs.push_back(std::move(run));
        }
    }

    void fillBackwards(Run& run, const Run& morning, const School& from) {
        run.students = morning.students;
        run.visits.push_back(atSchool(from));
        for (std::size_t i = morning.visits.size() - 1; i > 0; --i) {
            const Visit& visit = morning.visits[i - 1];
            run.visits.push_back(visit.stop->type == data::stoptype::Directional
                                     ? Visit{.stop = visit.stop}
                                     : boarding(*visit.stop, visit.students));
        }
    }

    /// A run that nobody has planned yet: its stops wait on no run.
    void leaveEmpty(Run& run, const Run& morning) {
        run.active = false;
        run.comment = "Not planned yet";
        for (const Visit& visit : morning.visits) {
            if (visit.stop->type == data::stoptype::Regular) {
                addLoose(boarding(*visit.stop, visit.students), triptype::Afternoon);
            }
        }
    }

    void addLoose(Visit visit, std::string_view tripType) {
        constexpr std::array Kinds = {NoRun::Null, NoRun::Empty, NoRun::Blank};
        district_.loose.push_back(
            {.visit = visit, .tripType = tripType, .noRun = random_.pick(Kinds)});
    }

    /// Noon records, on no run, fill up the number of stop trips.
    void addLooseVisits() {
        std::int64_t count = static_cast<std::int64_t>(district_.loose.size());
        for (const Run& run : district_.runs) {
            count += static_cast<std::int64_t>(run.visits.size());
        }
        for (std::size_t i = 0; count < sizes_.stopTrips; ++i) {
            const Stop& at = *district_.stops[(i * 3) % district_.stops.size()];
            if (at.type == data::stoptype::Regular) {
                addLoose(boarding(at, 0), triptype::Noon);
                ++count;
            }
        }
    }

    /// Deals the runs out tier by tier, so that a route rarely gets two at the same time; some runs
    /// get none.
    void assignRoutes() {
        for (std::int64_t i = 1; i <= sizes_.routes; ++i) {
            const std::int64_t garage = firstGarage_ + (i - 1) * garages_ / sizes_.routes;
            district_.routes.push_back({.id = i,
                                        .routeId = fmt::format("{:04}", 1000 + i),
                                        .name = fmt::format("Route {}", 1000 + i),
                                        .location = stop(garage).location,
                                        .garage = garage});
        }
        std::int64_t dealt = 0;
        for (const std::string_view tripType : {triptype::Morning, triptype::Afternoon}) {
            for (const Tier& tier : Tiers) {
                for (Run& run : district_.runs) {
                    const bool here = run.tripType == tripType && run.family == tier.type;
                    if (here && !run.visits.empty() && !random_.chance(5)) {
                        run.route = 1 + dealt++ % sizes_.routes;
                    }
                }
            }
        }
    }

    /// Within each route: from the garage and from the end of every run to the first stop of every
    /// other, and back to the garage.
    void addTravels() {
        std::vector<std::vector<const Run*>> byRoute(district_.routes.size() + 1);
        for (const Run& run : district_.runs) {
            if (run.route) {
                byRoute[static_cast<std::size_t>(*run.route)].push_back(&run);
            }
        }
        for (const Route& route : district_.routes) {
            const auto& runs = byRoute[static_cast<std::size_t>(route.id)];
            for (const Run* run : runs) {
                addTravel(route.garage, run->firstStop());
                addTravel(run->lastStop(), route.garage);
                for (const Run* next : runs) {
                    if (next != run) {
                        addTravel(run->lastStop(), next->firstStop());
                    }
                }
            }
        }
    }

    void addTravel(std::int64_t from, std::int64_t to) {
        const auto [low, high] = std::minmax(from, to);
        const bool placed = stop(from).placed && stop(to).placed;
        if (placed && travelled_.insert((low << 32) | high).second) {
            district_.travels.push_back(travelBetween(stop(from), stop(to)));
        }
    }

    Sizes sizes_;
    Random random_;
    District district_;
    double side_ = 0;
    Varied students_{StudentsPerRun, 12};
    Varied stops_{StopsPerRun, 6};
    std::int64_t garages_ = 0;
    std::int64_t firstGarage_ = 0;
    std::int64_t firstTurn_ = 0;
    std::int64_t turns_ = 0;
    std::unordered_set<std::int64_t> travelled_;
};

}  // namespace

Sizes Sizes::forRuns(std::int64_t runs) {
    return {.runs = runs,
            .stops = runs * 15 / 2,
            .stopTrips = runs * 20,
            .students = runs * 10,
            .logEntries = runs * 50,
            .routes = std::max<std::int64_t>(1, runs / 5)};
}

District generateDistrict(std::int64_t runs, std::uint64_t seed) {
    return Generator(runs, seed).build();
}

}  // namespace tools::district
