#include "tools/district/make/dress.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/base/value.h"
#include "runedit/validation/rules.h"
#include "tools/district/make/codes.h"
#include "tools/district/make/names.h"

namespace tools::district {

namespace {

constexpr std::int64_t FirstEmployee = 1001;
constexpr std::int64_t Day = base::Date::SecondsPerDay;

/// Students by special need at each stop.
using Needs = std::map<std::string_view, int>;
using NeedsByStop = std::unordered_map<const Stop*, Needs>;

NeedsByStop needsByStop(const District& district) {
    NeedsByStop byStop;
    for (const Student& student : district.students) {
        for (const std::string_view need : student.needs) {
            ++byStop[student.stop][need];
        }
    }
    return byStop;
}

void addNeeds(Student& student, Random& random) {
    const std::size_t roll = random.below(8);
    student.needs.push_back(NeedCodes[roll < NeedCodes.size() ? roll : 0]);
    if (student.needs.front() == NeedCodes.back() && random.chance(40)) {
        student.needs.push_back(NeedCodes.front());
    }
}

/// What a vehicle on one route has to carry.
struct Demand {
    int students = 0;
    bool wheelchairs = false;
};

Demand demandOf(const Run& run, const NeedsByStop& needs) {
    Demand demand{.students = run.students};
    for (const Visit& visit : run.visits) {
        const auto found = needs.find(visit.stop);
        demand.wheelchairs |= found != needs.end() && found->second.contains(NeedCodes.back());
    }
    return demand;
}

/// Now and then a vehicle is too small, or has no lift where one is needed.
std::string_view fittingType(const Demand& demand, Random& random) {
    const bool mistaken = random.chance(6);
    if (demand.wheelchairs && !mistaken) {
        return demand.students <= 14 ? "MINI20" : "BUS66L";
    }
    if (demand.students > 54) {
        return mistaken ? "BUS54" : "BUS66";
    }
    return mistaken || (demand.students <= 14 && random.chance(50)) ? "MINI20" : "BUS54";
}

std::string_view fittingLevel(const VehicleType& type, int students) {
    return students <= type.low ? "Low" : students <= type.medium ? "Medium" : "High";
}

Employee& hire(District& district, Random& random) {
    district.employees.push_back(
        {.number = FirstEmployee + static_cast<std::int64_t>(district.employees.size()),
         .lastName = std::string(lastName(random)),
         .firstName = std::string(firstName(random))});
    return district.employees.back();
}

void addSpares(District& district, Random& random) {
    const std::size_t spares = 2 + district.routes.size() / 10;
    for (std::size_t i = 0; i < spares; ++i) {
        const VehicleType& type = random.pick(vehicleTypes());
        district.vehicles.push_back({.id = fmt::format("S{:02}", i + 1),
                                     .description = fmt::format("Spare, {}", type.description),
                                     .type = std::string(type.code)});
        hire(district, random);
    }
}

/// A run as the rules of a validation see it.
class ValidatedRun {
public:
    ValidatedRun(Run& run, const Route* route) : run_(run), type_(vehicleType(run.vehicleType)) {
        checked_.run = run.id;
        checked_.vehicle = route == nullptr ? "" : route->vehicle;
        checked_.vehType = run.vehicleType;
        checked_.capacity = static_cast<std::int16_t>(type_.seats(run.capacity));
        for (const Visit& visit : run.visits) {
            const std::string_view type = visit.stop->type;
            if (type != data::stoptype::Directional) {
                timed_.push_back(rowOf(visit));
            }
            if (type == data::stoptype::Regular) {
                regular_.push_back(&visit);
            }
        }
    }

    void validate(const NeedsByStop& needs, int maxRideMinutes) {
        runedit::StopRows stops;
        std::vector<runedit::StopNeeds> needy;
        runedit::Findings leftHand;
        for (const Visit* visit : regular_) {
            stops.push_back(rowOf(*visit));
            needy.push_back({stops.back(), needsAt(*visit->stop, needs)});
            if (visit->stop->rightSide && !visit->rightHand) {
                leftHand.push_back(runedit::servedFromTheLeft(stops.back()));
            }
        }
        record("PASSENGERS", runedit::countPassengers(checked_, stops).findings);
        record("RIGHTSIDE", leftHand);
        record("RIDETIME",
               runedit::ridesTooLong(timed_, static_cast<std::int16_t>(maxRideMinutes)));
        record("SPECIAL", runedit::needsNotMet(checked_, needy, type_.needs));
    }

private:
    static runedit::StopRow rowOf(const Visit& visit) {
        return {visit.stop->stopId, {},         visit.stop->id,        {},
                visit.students,     visit.time, visit.cumulatedMinutes};
    }

    static std::vector<runedit::NeedCount> needsAt(const Stop& stop, const NeedsByStop& needs) {
        std::vector<runedit::NeedCount> counts;
        if (const auto found = needs.find(&stop); found != needs.end()) {
            for (const auto& [need, count] : found->second) {
                counts.push_back({std::string(need), static_cast<double>(count)});
            }
        }
        return counts;
    }

    void record(std::string_view type, const runedit::Findings& findings) {
        for (const runedit::Finding& finding : findings) {
            run_.findings.push_back({type, finding.message});
        }
    }

    Run& run_;
    const VehicleType& type_;
    runedit::CheckedRun checked_;
    runedit::StopRows timed_;
    std::vector<const Visit*> regular_;
};

}  // namespace

void addStudents(District& district, const School& school, const Stop& stop, int count,
                 Random& random) {
    for (int i = 0; i < count; ++i) {
        Student student{.id = static_cast<std::int64_t>(district.students.size()) + 1,
                        .lastName = std::string(lastName(random)),
                        .firstName = std::string(firstName(random)),
                        .school = &school,
                        .stop = &stop};
        if (random.chance(3)) {
            addNeeds(student, random);
        }
        district.students.push_back(std::move(student));
    }
}

void staffRoutes(District& district, Random& random) {
    const NeedsByStop needs = needsByStop(district);
    std::vector<Demand> demands(district.routes.size() + 1);
    for (const Run& run : district.runs) {
        if (run.route) {
            Demand& demand = demands[static_cast<std::size_t>(*run.route)];
            const Demand more = demandOf(run, needs);
            demand.students = std::max(demand.students, more.students);
            demand.wheelchairs |= more.wheelchairs;
        }
    }
    for (Route& route : district.routes) {
        const Demand& demand = demands[static_cast<std::size_t>(route.id)];
        const VehicleType& type = vehicleType(fittingType(demand, random));
        route.vehicle = route.routeId;
        district.vehicles.push_back({.id = route.vehicle,
                                     .description = std::string(type.description),
                                     .type = std::string(type.code)});
        route.driver = hire(district, random).number;
        if (demand.wheelchairs || random.chance(10)) {
            route.aide = hire(district, random).number;
        }
    }
    for (Run& run : district.runs) {
        run.vehicleType = run.route
                              ? district.vehicles[static_cast<std::size_t>(*run.route) - 1].type
                              : std::string("BUS66");
        run.capacity = fittingLevel(vehicleType(run.vehicleType), run.students);
    }
    addSpares(district, random);
}

void recordFindings(District& district) {
    const NeedsByStop needs = needsByStop(district);
    for (Run& run : district.runs) {
        const Route* route =
            run.route ? &district.routes[static_cast<std::size_t>(*run.route) - 1] : nullptr;
        ValidatedRun(run, route).validate(needs, district.maxRideMinutes);
    }
}

Travel travelBetween(const Stop& from, const Stop& to) {
    return {.from = from.id,
            .to = to.id,
            .minutes = base::singleOf(driveMinutes(from.at, to.at)),
            .miles = milesBetween(from.at, to.at)};
}

bool servedFromTheRight(const Stop& stop, Random& random) {
    return !random.chance(stop.rightSide ? 6 : 40);
}

base::Date officeTime(base::Date day, Random& random) {
    constexpr std::int64_t Saturday = 0;  // 1899-12-30 was one
    const std::int64_t weekday = day.seconds / Day % 7;
    const base::Date workday = day.dateValue().plusSeconds(weekday == Saturday       ? 2 * Day
                                                           : weekday == Saturday + 1 ? Day
                                                                                     : 0);
    return workday.plusSeconds(random.between(25'200, 61'199));
}

Audit auditBefore(base::Date asOf, Random& random) {
    const base::Date created = asOf.plusSeconds(-random.between(120, 700) * Day);
    const base::Date changed = asOf.plusSeconds(-random.between(2, 110) * Day);
    return {.createdBy = std::string(user::BuiltIn),
            .created = officeTime(created, random),
            .changedBy = std::string(random.chance(75) ? user::Planner : user::Clerk),
            .changed = officeTime(changed, random)};
}

}  // namespace tools::district
