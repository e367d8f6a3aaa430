#include "runsearch/schedule/plan.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "platform/ado/recordset.h"
#include "platform/base/date.h"
#include "platform/base/text.h"
#include "platform/base/wait.h"

namespace schedule {

namespace {

constexpr std::array Weekdays{"monday", "tuesday", "wednesday", "thursday", "friday"};

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
        return std::hash<std::string_view>{}(text);
    }
};
using Places = std::unordered_map<std::string, int, TextHash, std::equal_to<>>;

/// Codes are given places as they come; names are put to them before.
template <class Item>
class Interned {
public:
    explicit Interned(std::vector<Item>& items) : items_(items) {}

    /// Codes compare without case and trailing blanks.
    int placeOf(std::string_view code) {
        const auto known = seen_.find(code);
        if (known != seen_.end()) {
            return known->second;
        }
        const auto key = base::lowered(base::trim(code));
        const auto [entry, isNew] = places_.try_emplace(key, static_cast<int>(items_.size()));
        if (isNew) {
            Item item;
            item.code = base::trim(code);
            item.name = item.code;
            items_.push_back(std::move(item));
        }
        seen_.emplace(code, entry->second);
        return entry->second;
    }

private:
    std::vector<Item>& items_;
    Places seen_;    ///< as written
    Places places_;  ///< folded
};

std::string textOf(const ado::Field& field) { return std::string(base::trim(field.textView())); }

std::optional<Seconds> timeOf(const ado::Field& field) {
    const auto date = base::Date::fromIso(field.textView());
    return date ? std::optional(static_cast<Seconds>(date->timeValue().seconds)) : std::nullopt;
}

double numberOf(const ado::Field& field) { return field.isNull() ? 0 : field.asNumber(); }
int wholeOf(const ado::Field& field) { return static_cast<int>(numberOf(field)); }
bool flagOf(const ado::Field& field) { return !field.isNull() && field.asBoolean(); }

/// A negative figure says that the leg is not or could not be calculated.
EmptyTrip emptyTrip(const ado::Field& minutes, const ado::Field& miles) {
    const double time = minutes.isNull() ? -1 : minutes.asNumber();
    if (time < 0) {
        return {};
    }
    return {static_cast<Seconds>(std::lround(time * Minute)), std::max(0.0, numberOf(miles))};
}

void forEachRow(ado::Connection& connection, std::string_view sql,
                const std::function<void(ado::Recordset&)>& row) {
    ado::Recordset rows(sql, connection);
    for (; !rows.Eof(); rows.MoveNext()) {
        row(rows);
    }
}

SeatLevel seatLevelOf(std::string_view level) {
    return level.empty() || base::equalsNoCase(level, "Medium") ? SeatLevel::Medium
           : base::equalsNoCase(level, "High")                  ? SeatLevel::High
           : base::equalsNoCase(level, "Low")                   ? SeatLevel::Low
                                                                : SeatLevel::Unknown;
}

struct RunFields;

class PlanReader {
public:
    PlanReader(ado::Connection& routing, Plan& plan) : routing_(routing), plan_(plan) {}

    void read(const std::string& sql);

private:
    void readDistrict();
    void readZones();
    void readSchools();
    void readNames(const char* table, const char* code, const char* name, Interned<Named>& into,
                   std::vector<Named>& items);
    void readVehicles();
    void readWarnings();
    void readRuns(const std::string& sql);
    int routeOf(const RunFields& fields);
    [[nodiscard]] int typeOfVehicle(const std::string& vehicle) const;
    void readGarages();
    void sortRoutes();

    ado::Connection& routing_;
    Plan& plan_;
    Interned<School> schools_{plan_.schools};
    Interned<Named> schoolTypes_{plan_.schoolTypes};
    Interned<Named> tripTypes_{plan_.tripTypes};
    Interned<Named> locations_{plan_.locations};
    Interned<Named> vehicleTypes_{plan_.vehicleTypes};
    std::unordered_map<std::int64_t, int> routes_;
    std::unordered_map<std::string, int> typeOfVehicle_;
    std::unordered_set<std::string> warned_;
    base::Breath breath_;
};

void PlanReader::read(const std::string& sql) {
    for (auto* names : {&tripTypes_, &locations_, &vehicleTypes_, &schoolTypes_}) {
        names->placeOf("");
    }
    schools_.placeOf("");
    readDistrict();
    readZones();
    if (base::trim(sql).empty()) {
        return;
    }
    readNames("SCHOOLTYPE", "SCHOOLTYPE", "DESCRIPTION", schoolTypes_, plan_.schoolTypes);
    readNames("TRIPTYPE", "TRIPTYPE", "DESCRIPTION", tripTypes_, plan_.tripTypes);
    readNames("LOCCODE", "LOCCODE", "DESCRIPTION", locations_, plan_.locations);
    readSchools();
    readVehicles();
    breath_.takeNow();
    readWarnings();
    breath_.takeNow();
    readRuns(sql);
    breath_.takeNow();
    readGarages();
    sortRoutes();
    breath_.takeNow();
}

void PlanReader::readGarages() {
    forEachRow(routing_, "SELECT ROUTE.INT_ROUTEID, ROUTE.GARAGE_STOPID FROM ROUTE",
               [this](ado::Recordset& row) {
                   const auto route =
                       routes_.find(static_cast<std::int64_t>(numberOf(row.Fields("INT_ROUTEID"))));
                   if (route != routes_.end()) {
                       plan_.routes[static_cast<std::size_t>(route->second)].garage =
                           wholeOf(row.Fields("GARAGE_STOPID"));
                   }
               });
}

void PlanReader::readDistrict() {
    forEachRow(routing_, "SELECT District.DistName, District.Back_To_Garage_Gap FROM District",
               [this](ado::Recordset& row) {
                   plan_.district = textOf(row.Fields("DistName"));
                   plan_.backToGarageGap = numberOf(row.Fields("Back_To_Garage_Gap"));
               });
}

void PlanReader::readZones() {
    forEachRow(routing_,
               "SELECT TIMEZONES.* FROM TIMEZONES ORDER BY TIMEZONES.STARTTIME, TIMEZONES.ENDTIME",
               [this](ado::Recordset& row) {
                   const auto start = timeOf(row.Fields("STARTTIME"));
                   const auto end = timeOf(row.Fields("ENDTIME"));
                   if (start && end) {
                       plan_.zones.push_back({textOf(row.Fields("TIMEZONE")), *start,
                                              *end > *start ? *end : *end + Day});
                   }
               });
}

void PlanReader::readNames(const char* table, const char* code, const char* name,
                           Interned<Named>& into, std::vector<Named>& items) {
    const std::string of = table;
    forEachRow(routing_, "SELECT " + of + ".* FROM " + of, [&](ado::Recordset& row) {
        const int place = into.placeOf(row.Fields(code).textView());
        if (auto text = textOf(row.Fields(name)); !text.empty()) {
            items[static_cast<std::size_t>(place)].name = std::move(text);
        }
    });
}

void PlanReader::readSchools() {
    forEachRow(routing_, "SELECT SCHOOL.SCHOOL, SCHOOL.SCHOOLNAME, SCHOOL.SCHOOLTYPE FROM SCHOOL",
               [this](ado::Recordset& row) {
                   const int place = schools_.placeOf(row.Fields("SCHOOL").textView());
                   auto& school = plan_.schools[static_cast<std::size_t>(place)];
                   if (auto name = textOf(row.Fields("SCHOOLNAME")); !name.empty()) {
                       school.name = std::move(name);
                   }
                   school.type = schoolTypes_.placeOf(row.Fields("SCHOOLTYPE").textView());
               });
}

void PlanReader::readVehicles() {
    forEachRow(routing_, "SELECT VEHTYPE.* FROM VEHTYPE", [this](ado::Recordset& row) {
        const int place = vehicleTypes_.placeOf(row.Fields("VEHTYPE").textView());
        if (auto name = textOf(row.Fields("VTYPDESC")); !name.empty()) {
            plan_.vehicleTypes[static_cast<std::size_t>(place)].name = std::move(name);
        }
        plan_.seats.resize(plan_.vehicleTypes.size());
        plan_.seats[static_cast<std::size_t>(place)] = {
            wholeOf(row.Fields("HIGH")), wholeOf(row.Fields("MEDIUM")), wholeOf(row.Fields("LOW"))};
    });
    forEachRow(routing_, "SELECT VEHICLE.VEHICLE, VEHICLE.VEHTYPE FROM VEHICLE",
               [this](ado::Recordset& row) {
                   typeOfVehicle_[base::lowered(textOf(row.Fields("VEHICLE")))] =
                       vehicleTypes_.placeOf(row.Fields("VEHTYPE").textView());
               });
}

void PlanReader::readWarnings() {
    forEachRow(routing_, "SELECT RUNWARNING.RUN FROM RUNWARNING GROUP BY RUNWARNING.RUN",
               [this](ado::Recordset& row) {
                   warned_.insert(base::lowered(base::trim(row.Fields("RUN").textView())));
               });
}

/// A run that has but one of its times stands there without length; one that ends before it starts
/// passes midnight.
void settleTimes(ScheduledRun& run) {
    run.lacksStart = !run.start;
    run.lacksEnd = !run.end;
    if (!run.start || !run.end) {
        run.start = run.end = run.start ? run.start : run.end;
    } else if (*run.end < *run.start) {
        *run.end += Day;
    }
}

/// The fields of the search, found once for all rows.
struct RunFields {
    explicit RunFields(ado::Recordset& rows) : rows_(rows) {
        std::ranges::transform(Weekdays, days.begin(),
                               [&](const char* name) { return &rows.Fields(name); });
    }

    void readInto(ScheduledRun& run) const;

private:
    ado::Recordset& rows_;
    [[nodiscard]] const ado::Field& of(const char* name) const { return rows_.Fields(name); }

public:
    const ado::Field& id = of("RUN");
    const ado::Field& description = of("DESCRIPTION");
    const ado::Field& school = of("SCHOOL");
    const ado::Field& tripType = of("TRIPTYPE");
    const ado::Field& location = of("LOCCODE");
    const ado::Field& vehicleType = of("VEHTYPE");
    const ado::Field& capacity = of("Capacity");
    const ado::Field& routeKey = of("INT_ROUTEID");
    const ado::Field& routeId = of("ROUTEID");
    const ado::Field& vehicle = of("VEHICLE");
    const ado::Field& driverKey = of("EMPNUM");
    const ado::Field& driver = of("EMPNAME");
    const ado::Field& start = of("STARTTIME");
    const ado::Field& end = of("ENDTIME");
    const ado::Field& bell = of("BELLTIME");
    const ado::Field& stops = of("total_stops");
    const ado::Field& students = of("TOTAL_STUDENTS");
    const ado::Field& miles = of("TOTAL_MILES");
    const ado::Field& pickUp = of("PICKUP");
    const ado::Field& regenerate = of("REGENERATE");
    const ado::Field& firstStop = of("FirstStop");
    const ado::Field& lastStop = of("LastStop");
    const ado::Field& changed = of("changeddt");
    const ado::Field& beforeTime = of("DEADHEAD_BEFORE_TIME");
    const ado::Field& beforeMiles = of("DEADHEAD_MILES_BEFORE");
    const ado::Field& afterTime = of("DEADHEAD_AFTER_TIME");
    const ado::Field& afterMiles = of("DEADHEAD_MILES_AFTER");
    // The names are crossed: the first says that the bus goes back after the run.
    const ado::Field& toGarage = of("SHOW_BOTH_BEG");
    const ado::Field& fromGarage = of("SHOW_BOTH_END");
    std::array<const ado::Field*, Weekdays.size()> days{};
};

/// All that needs no other table.
void RunFields::readInto(ScheduledRun& run) const {
    run.id = textOf(id);
    run.description = textOf(description);
    run.start = timeOf(start);
    run.end = timeOf(end);
    run.bell = timeOf(bell);
    settleTimes(run);
    run.before = emptyTrip(beforeTime, beforeMiles);
    run.after = emptyTrip(afterTime, afterMiles);
    run.stops = wholeOf(stops);
    run.students = wholeOf(students);
    run.miles = numberOf(miles);
    for (std::size_t day = 0; day < days.size(); ++day) {
        run.days = static_cast<Days>(run.days | (flagOf(*days[day]) ? 1U << day : 0U));
    }
    run.firstStop = wholeOf(firstStop);
    run.lastStop = wholeOf(lastStop);
    run.changedAt = changed.isNull() ? 0 : changed.Value().asDate().seconds;
    run.routeKey = routeKey.isNull() ? 0 : routeKey.asInteger();
    run.seatLevel = seatLevelOf(base::trim(capacity.textView()));
    run.isPickUp = flagOf(pickUp);
    run.toGarage = flagOf(toGarage);
    run.fromGarage = flagOf(fromGarage);
    run.needsMap = flagOf(regenerate);
}

void PlanReader::readRuns(const std::string& sql) {
    ado::Recordset rows(sql, routing_);
    const RunFields fields(rows);
    breath_.takeNow();
    for (; !rows.Eof(); rows.MoveNext()) {
        breath_.take();
        auto& run = plan_.runs.emplace_back();
        fields.readInto(run);
        run.school = schools_.placeOf(fields.school.textView());
        run.tripType = tripTypes_.placeOf(fields.tripType.textView());
        run.location = locations_.placeOf(fields.location.textView());
        run.ownVehicleType = vehicleTypes_.placeOf(fields.vehicleType.textView());
        plan_.putOnRoute(run, routeOf(fields));
        run.hasWarnings = !warned_.empty() && warned_.contains(base::lowered(run.id));
    }
}

int PlanReader::routeOf(const RunFields& fields) {
    if (fields.routeKey.isNull() || fields.routeId.isNull()) {
        return None;
    }
    const auto key = fields.routeKey.asInteger();
    const auto [known, isNew] = routes_.try_emplace(key, static_cast<int>(plan_.routes.size()));
    if (isNew) {
        plan_.routes.push_back({key, textOf(fields.routeId), textOf(fields.vehicle),
                                fields.driverKey.isNull() ? "" : fields.driverKey.asText(),
                                textOf(fields.driver), 0, typeOfVehicle(textOf(fields.vehicle))});
    }
    return known->second;
}

int PlanReader::typeOfVehicle(const std::string& vehicle) const {
    const auto known = typeOfVehicle_.find(base::lowered(vehicle));
    return known == typeOfVehicle_.end() ? None : known->second;
}

void PlanReader::sortRoutes() {
    std::vector<int> order(plan_.routes.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = static_cast<int>(i);
    }
    const auto route = [this](int place) -> Route& {
        return plan_.routes[static_cast<std::size_t>(place)];
    };
    std::ranges::sort(order, [&](int a, int b) {
        return route(a).id != route(b).id ? naturalLess(route(a).id, route(b).id)
                                          : route(a).key < route(b).key;
    });
    std::vector<Route> sorted;
    std::vector<int> placeOf(order.size());
    for (const int place : order) {
        placeOf[static_cast<std::size_t>(place)] = static_cast<int>(sorted.size());
        sorted.push_back(std::move(route(place)));
    }
    plan_.routes = std::move(sorted);
    for (auto& run : plan_.runs) {
        run.route = run.route == None ? None : placeOf[static_cast<std::size_t>(run.route)];
    }
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// The digits at the front, taken off, without zeros before them.
std::string_view takeNumber(std::string_view& text) {
    const auto end = std::ranges::find_if_not(text, isDigit) - text.begin();
    auto number = text.substr(0, static_cast<std::size_t>(end));
    text.remove_prefix(number.size());
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

}  // namespace

Plan readPlan(ado::Connection& routing, const std::string& runSearchSchoolSql) {
    Plan plan;
    PlanReader(routing, plan).read(runSearchSchoolSql);
    return plan;
}

int Plan::seatsOf(int vehicleType, SeatLevel level) const {
    const auto type = static_cast<std::size_t>(vehicleType);
    return type < seats.size() && level != SeatLevel::Unknown
               ? seats[type][static_cast<std::size_t>(level)]
               : 0;
}

void Plan::putOnRoute(ScheduledRun& run, int place) const {
    run.route = place;
    const int ofRoute = place == None ? None : route(place).vehicleType;
    run.vehicleType = ofRoute == None ? run.ownVehicleType : ofRoute;
    run.seats = seatsOf(run.vehicleType, run.seatLevel);
}

int zoneAt(const std::vector<TimeZone>& zones, Seconds time) {
    const auto within = [&](Seconds slack) {
        const auto found = std::ranges::find_if(zones, [&](const TimeZone& zone) {
            return (zone.start <= time && time < zone.end + slack) ||
                   (zone.start <= time + Day && time + Day < zone.end + slack);
        });
        return found == zones.end() ? None : static_cast<int>(found - zones.begin());
    };
    // Zones that are written as 5:00 to 8:59 hold their last minute, too.
    const int zone = within(0);
    return zone == None ? within(Minute) : zone;
}

bool naturalLess(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const auto x = takeNumber(a);
            const auto y = takeNumber(b);
            if (x != y) {
                return std::tuple(x.size(), x) < std::tuple(y.size(), y);
            }
        } else if (base::lowered(a.front()) != base::lowered(b.front())) {
            return base::lowered(a.front()) < base::lowered(b.front());
        } else {
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
    }
    return a.empty() && !b.empty();
}

}  // namespace schedule
