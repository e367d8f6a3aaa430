#include "tools/district/make/sample.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/base/error.h"
#include "platform/base/value.h"
#include "tools/district/make/codes.h"
#include "tools/district/make/dress.h"
#include "tools/district/make/names.h"
#include "tools/district/travel/timetable.h"

namespace tools::district {

namespace {

using base::Date;

constexpr std::uint64_t SampleSeed = 66;
constexpr std::int64_t FirstExtraStop = 100901;
constexpr std::size_t ExtraStops = 14;
constexpr std::size_t UnplacedStops = 6;
constexpr std::size_t UnplacedOnRuns = 2;
constexpr std::size_t AfternoonSchools = 2;
constexpr int SummerRuns = 3;
constexpr std::int64_t SampleLogEntries = 2500;

struct SchoolFacts {
    int id;
    std::size_t name;
    std::string_view type;
    Date dismissal;
};
const std::array<SchoolFacts, 6> Facts = {{{200001, 0, "HS", Date::timeOfDay(13, 45)},
                                           {200002, 2, "MS", Date::timeOfDay(15, 20)},
                                           {200003, 3, "ELEM", Date::timeOfDay(15, 50)},
                                           {200004, 5, "PK", Date::timeOfDay(14, 30)},
                                           {200005, 4, "ELEM", Date::timeOfDay(16, 0)},
                                           {200006, 1, "HS", Date::timeOfDay(14, 10)}}};

const SchoolFacts& factsOf(int id) {
    const auto* found = std::ranges::find(Facts, id, &SchoolFacts::id);
    if (found == Facts.end()) {
        base::raise(base::errors::SubscriptOutOfRange);
    }
    return *found;
}

Date ofPlan(std::int64_t milliseconds) {
    return Date{base::roundHalfEven(static_cast<double>(milliseconds) / 1000) + SampleShiftSeconds};
}

class SampleBuilder {
public:
    explicit SampleBuilder(const Plan& plan) : plan_(plan) {}

    District build() {
        district_.name = "Four Towns Unified School District";
        district_.maxRideMinutes = 45;
        district_.backToGarageMinutes = 180;
        district_.runCost = 2.5;
        district_.asOf = Date::of(2026, 1, 30, 12);
        district_.logEntries = SampleLogEntries;
        district_.seed = SampleSeed;
        addGarage();
        addSchools();
        addStops();
        addMorningRuns();
        addAfternoonRuns();
        addSummerRuns();
        addExtraStops();
        staffRoutes(district_, random_);
        recordFindings(district_);
        addTravels();
        return std::move(district_);
    }

private:
    Stop& add(Stop stop) {
        const Town& town = townOf(stop.at.x > plan_.depot.x, stop.at.y > plan_.depot.y);
        stop.location = town.location;
        stop.address = addressAt(stop.at);
        district_.stops.push_back(std::make_unique<Stop>(std::move(stop)));
        return *district_.stops.back();
    }

    void addGarage() {
        add({.id = plan_.depotId,
             .stopId = "GARAGE",
             .type = data::stoptype::Garage,
             .description = "Bus garage",
             .at = plan_.depot});
    }

    void addSchools() {
        for (const PlanSchool& one : plan_.schools) {
            const SchoolFacts& facts = factsOf(one.id);
            const auto [code, name] = schoolName(facts.name, facts.type);
            district_.schools.push_back(
                std::make_unique<School>(School{.code = code,
                                                .name = name,
                                                .type = std::string(facts.type),
                                                .bell = Date{one.latest + SampleShiftSeconds},
                                                .dismissal = facts.dismissal,
                                                .stop = one.id,
                                                .at = one.at}));
            add({.id = one.id,
                 .stopId = code,
                 .type = data::stoptype::School,
                 .description = name,
                 .school = code,
                 .at = one.at});
        }
        const auto [code, name] = schoolName(8, "VOC");
        district_.schools.push_back(std::make_unique<School>(
            School{.code = code, .name = name + " (closed)", .type = "VOC", .active = false}));
    }

    [[nodiscard]] const School& school(int id) const {
        return **std::ranges::find(district_.schools, id,
                                   [](const auto& one) { return one->stop; });
    }

    [[nodiscard]] const Stop& stop(std::int64_t id) const {
        return **std::ranges::find(district_.stops, id, [](const auto& one) { return one->id; });
    }

    void addStops() {
        for (const PlanStop& one : plan_.stops) {
            const Stop& added = add({.id = one.id,
                                     .stopId = std::to_string(one.id),
                                     .type = data::stoptype::Regular,
                                     .description = cornerAt(one.at),
                                     .at = one.at,
                                     .rightSide = random_.chance(12)});
            addStudents(district_, school(one.school), added, one.students, random_);
        }
    }

    [[nodiscard]] Visit boarding(int stopId) {
        const Stop& at = stop(stopId);
        const int students = plan_.stop(stopId).students;
        return {.stop = &at,
                .students = students,
                .loadMinutes = boardingMinutes(students),
                .rightHand = servedFromTheRight(at, random_)};
    }

    [[nodiscard]] Visit atSchool(const School& school) const {
        return {.stop = &stop(school.stop), .loadMinutes = schoolMinutes()};
    }

    [[nodiscard]] Run runFor(const School& school) {
        Run run;
        run.school = school.code;
        run.family = school.type;
        run.location = stop(school.stop).location;
        run.audit = auditBefore(district_.asOf, random_);
        return run;
    }

    static void countStudents(Run& run) {
        for (const Visit& visit : run.visits) {
            run.students += visit.students;
        }
    }

    void addMorningRuns() {
        for (const PlanRun& one : plan_.runs) {
            const School& to = school(one.school.stop);
            Run run = runFor(to);
            run.id = sampleRunId(one);
            run.tripType = triptype::Morning;
            run.route = routeOf(one.bus);
            run.bell = to.bell;
            for (const PlanVisit& visit : one.pickups) {
                run.visits.push_back(boarding(visit.stop));
            }
            run.visits.push_back(atSchool(to));
            run.description =
                fmt::format("{} from {}", to.name, streetName(run.visits.front().stop->at.y));
            run.regenerate = random_.chance(12);
            countStudents(run);
            setLegs(run, false);
            setTimes(run, Anchor::End, ofPlan(one.school.arrival));
            district_.runs.push_back(std::move(run));
        }
    }

    std::int64_t routeOf(int bus) {
        const auto found = std::ranges::find(district_.routes, bus, &Route::id);
        if (found == district_.routes.end()) {
            district_.routes.push_back({.id = bus,
                                        .routeId = std::to_string(100 + bus),
                                        .name = fmt::format("Bus {}", 100 + bus),
                                        .location = stop(plan_.depotId).location,
                                        .garage = plan_.depotId});
        }
        return bus;
    }

    /// The way home of two schools, not yet given to any bus: the morning runs backwards.
    void addAfternoonRuns() {
        std::vector<Run> homeward;
        for (const Run& morning : district_.runs) {
            for (std::size_t i = 0; i < AfternoonSchools; ++i) {
                const School& from = *district_.schools[i];
                if (morning.school == from.code) {
                    homeward.push_back(afternoonRun(morning, from, homeward.size() + 1));
                }
            }
        }
        for (Run& run : homeward) {
            district_.runs.push_back(std::move(run));
        }
        addLooseAfternoons();
    }

    Run afternoonRun(const Run& morning, const School& from, std::size_t number) {
        Run run = runFor(from);
        run.id = fmt::format("P{:02}", number);
        run.tripType = triptype::Afternoon;
        run.bell = from.dismissal;
        run.pickup = false;
        run.active = number % 8 != 0;
        run.fridays = number % 5 != 0;
        run.description =
            fmt::format("{} to {}", from.name, streetName(morning.visits.front().stop->at.y));
        run.visits.push_back(atSchool(from));
        if (number % 4 == 1) {
            run.visits.push_back({.stop = &turnPoint(from, number)});
        }
        for (std::size_t i = morning.visits.size() - 1; i > 0; --i) {
            run.visits.push_back(boarding(static_cast<int>(morning.visits[i - 1].stop->id)));
        }
        countStudents(run);
        setLegs(run, true);
        setTimes(run, Anchor::Start, from.dismissal.plusSeconds(600));
        return run;
    }

    const Stop& turnPoint(const School& from, std::size_t number) {
        const Point at{from.at.x + 660 * static_cast<double>(number), from.at.y};
        return add({.id = 800000 + static_cast<std::int64_t>(number),
                    .stopId = fmt::format("TURN{:02}", number),
                    .type = data::stoptype::Directional,
                    .description = "Turn at " + cornerAt(at),
                    .at = at});
    }

    /// Afternoon records of the stops whose way home nobody has planned yet.
    void addLooseAfternoons() {
        for (const PlanStop& one : plan_.stops) {
            const std::string& code = school(one.school).code;
            const bool planned =
                code == district_.schools[0]->code || code == district_.schools[1]->code;
            if (!planned) {
                district_.loose.push_back(
                    {.visit = boarding(one.id), .tripType = triptype::Afternoon, .noRun = noRun()});
            }
        }
    }

    NoRun noRun() {
        constexpr std::array Kinds = {NoRun::Null, NoRun::Empty, NoRun::Blank};
        return random_.pick(Kinds);
    }

    void addSummerRuns() {
        for (int i = 1; i <= SummerRuns; ++i) {
            const School& to = *district_.schools[static_cast<std::size_t>(i)];
            Run run = runFor(to);
            run.id = fmt::format("SUMMER-{}", i);
            run.description = "Last summer: " + to.name;
            run.comment = "Kept for next summer's planning";
            run.active = false;
            run.tripType = triptype::Summer;
            run.family = "SUMMER";
            run.bell = Date::timeOfDay(9, 0);
            setTimes(run, Anchor::End, run.bell);
            district_.runs.push_back(std::move(run));
        }
    }

    /// Stops that nobody boards at: requested, closed, or not yet found on the map. Two of the
    /// latter are on afternoon runs already, which therefore cannot go to the map.
    void addExtraStops() {
        for (std::size_t i = 0; i < ExtraStops; ++i) {
            const bool placed = i >= UnplacedStops;
            const Point at =
                placed ? Point{random_.uniform(20000, 190000), random_.uniform(20000, 190000)}
                       : Point{};
            const auto id = FirstExtraStop + static_cast<std::int64_t>(i);
            Stop& added = add(
                {.id = id,
                 .stopId = std::to_string(id),
                 .type = data::stoptype::Regular,
                 .description = placed ? "Requested: " + cornerAt(at) : "Requested by telephone",
                 .at = at,
                 .placed = placed,
                 .active = i % 3 != 2,
                 .comment = placed ? "" : "Ask for the house number"});
            if (!placed) {
                added.address = fmt::format("{} County Line Road", 400 + 12 * i);
            }
            if (i < UnplacedOnRuns) {
                putOnAfternoonRun(added, i);
            } else {
                district_.loose.push_back(
                    {.visit = {.stop = &added, .active = added.active},
                     .tripType = i % 2 == 0 ? triptype::Morning : triptype::Noon,
                     .noRun = noRun()});
            }
        }
    }

    void putOnAfternoonRun(const Stop& unplaced, std::size_t which) {
        const std::string id = fmt::format("P{:02}", 3 + 4 * which);
        Run& run = *std::ranges::find(district_.runs, id, &Run::id);
        run.visits.push_back({.stop = &unplaced, .loadMinutes = boardingMinutes(0)});
        run.regenerate = true;
        setLegs(run, true);
        setTimes(run, Anchor::Start, run.start);
    }

    /// From the garage and from every school to every place on the map.
    void addTravels() {
        std::vector<const Stop*> hubs;
        for (const auto& one : district_.stops) {
            if (one->type == data::stoptype::Garage || one->type == data::stoptype::School) {
                hubs.push_back(one.get());
            }
        }
        for (std::size_t i = 0; i < hubs.size(); ++i) {
            for (std::size_t j = i + 1; j < hubs.size(); ++j) {
                addTravel(*hubs[i], *hubs[j]);
            }
            for (const auto& one : district_.stops) {
                if (one->type == data::stoptype::Regular && one->placed) {
                    addTravel(*hubs[i], *one);
                }
            }
        }
    }

    void addTravel(const Stop& from, const Stop& to) {
        district_.travels.push_back(travelBetween(from, to));
    }

    const Plan& plan_;
    District district_;
    Random random_{SampleSeed};
};

}  // namespace

std::string sampleRunId(const PlanRun& run) {
    return fmt::format("{}-{}", 100 + run.bus, run.ordinal);
}

District sampleDistrict(const Plan& plan) { return SampleBuilder(plan).build(); }

}  // namespace tools::district
