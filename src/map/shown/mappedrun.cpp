#include "map/shown/mappedrun.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "map/shown/fields.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"

namespace map {

namespace {

constexpr std::string_view RunsFrom =
    "SELECT RUN.RUN, RUN.DESCRIPTION, RUN.SCHOOL, RUN.TRIPTYPE, RUN.VEHTYPE, RUN.Capacity, "
    "RUN.PICKUP, RUN.TimeToUse, RUN.REGENERATE, RUN.BELLTIME, RUN.STARTTIME, RUN.ENDTIME, "
    "RUN.TOTAL_TIME, RUN.TOTAL_MILES, RUN.INT_ROUTEID, SCHOOL.SCHOOLNAME, ROUTE.ROUTEID, "
    "ROUTE.VEHICLE, VEHICLE.VEHTYPE AS VEHICLETYPE, STOP.ADDR1, STOP.DESCRIPTION AS GARAGENAME, "
    "STOP.STOPID, STOP.XPOS, STOP.YPOS FROM (((RUN LEFT JOIN SCHOOL ON RUN.SCHOOL = "
    "SCHOOL.SCHOOL) LEFT JOIN ROUTE ON RUN.INT_ROUTEID = ROUTE.INT_ROUTEID) LEFT JOIN VEHICLE ON "
    "ROUTE.VEHICLE = VEHICLE.VEHICLE) LEFT JOIN STOP ON ROUTE.GARAGE_STOPID = STOP.INT_STOPID "
    "WHERE ";

constexpr std::string_view StopsFrom =
    "SELECT STOP_TRIPTYPE.ID, STOP_TRIPTYPE.INT_STOPID, STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.RUNSEQ, "
    "STOP_TRIPTYPE.NUM_STUDENTS, STOP_TRIPTYPE.LOAD_TIME, STOP_TRIPTYPE.TIME_TOSTOP, "
    "STOP_TRIPTYPE.DIST_TOSTOP, STOP_TRIPTYPE.TIME_AT_STOP, STOP.STOPID, STOP.STOPTYPE, "
    "STOP.DESCRIPTION, STOP.ADDR1, STOP.XPOS, STOP.YPOS, STOP.RIGHTSIDE FROM (RUN INNER JOIN "
    "STOP_TRIPTYPE ON RUN.RUN = STOP_TRIPTYPE.RUN) INNER JOIN STOP ON STOP_TRIPTYPE.INT_STOPID = "
    "STOP.INT_STOPID WHERE ";

constexpr std::string_view FindingsFrom =
    "SELECT RUNWARNING.RUN, RUNWARNING.WARNINGTYPE, RUNWARNING.WARNINGTEXT FROM RUN INNER JOIN "
    "RUNWARNING ON RUN.RUN = RUNWARNING.RUN WHERE ";

std::string firstOf(std::string address, std::string description, std::string id) {
    return !address.empty()       ? std::move(address)
           : !description.empty() ? std::move(description)
                                  : std::move(id);
}

bool isPlace(geo::Feet at) { return at.x != 0 || at.y != 0; }

StopKind kindOf(std::string_view type) {
    return base::equalsNoCase(type, data::stoptype::School)        ? StopKind::School
           : base::equalsNoCase(type, data::stoptype::Garage)      ? StopKind::Garage
           : base::equalsNoCase(type, data::stoptype::Directional) ? StopKind::TurnPoint
                                                                   : StopKind::Stop;
}

/// Seats by vehicle type; the levels as a run names them.
class Seats {
public:
    explicit Seats(ado::Connection& routing) {
        constexpr auto Sql =
            "SELECT VEHTYPE.VEHTYPE, VEHTYPE.HIGH, VEHTYPE.MEDIUM, VEHTYPE.LOW FROM VEHTYPE";
        for (ado::Recordset row(Sql, routing); !row.Eof(); row.MoveNext()) {
            ofType_[base::lowered(textOf(row["VEHTYPE"]))] = {
                wholeOf(row["HIGH"]), wholeOf(row["MEDIUM"]), wholeOf(row["LOW"])};
        }
    }

    [[nodiscard]] std::optional<int> of(std::string_view type, std::string_view level) const {
        const auto known = ofType_.find(base::lowered(type));
        if (known == ofType_.end()) {
            return std::nullopt;
        }
        return base::equalsNoCase(level, "High")  ? known->second.high
               : base::equalsNoCase(level, "Low") ? known->second.low
                                                  : known->second.medium;
    }

private:
    struct Levels {
        int high = 0;
        int medium = 0;
        int low = 0;
    };
    std::map<std::string, Levels> ofType_;
};

void readTimes(ado::Recordset& row, MappedRun& run) {
    run.bell = timeOf(row["BELLTIME"]);
    run.start = timeOf(row["STARTTIME"]);
    run.end = timeOf(row["ENDTIME"]);
    run.minutes = numberOf(row["TOTAL_TIME"]);
    run.miles = numberOf(row["TOTAL_MILES"]);
    run.isPickup = flagOf(row["PICKUP"]);
    run.countsFromStart = base::equalsNoCase(textOf(row["TimeToUse"]), "Start Time");
    run.needsSolving = flagOf(row["REGENERATE"]);
}

MappedRun runIn(ado::Recordset& row, const Seats& seats) {
    MappedRun run{.id = textOf(row["RUN"]),
                  .description = textOf(row["DESCRIPTION"]),
                  .school = textOf(row["SCHOOL"]),
                  .schoolName = textOf(row["SCHOOLNAME"]),
                  .tripType = textOf(row["TRIPTYPE"]),
                  .vehicle = textOf(row["VEHICLE"]),
                  .routeKey = row["INT_ROUTEID"].isNull() ? 0 : row["INT_ROUTEID"].asInteger(),
                  .routeId = textOf(row["ROUTEID"])};
    const auto ownType = textOf(row["VEHTYPE"]);
    const auto type = textOf(row["VEHICLETYPE"]);
    run.seats = seats.of(type.empty() ? ownType : type, textOf(row["Capacity"]));
    readTimes(row, run);
    if (const auto at = placeOf(row); isPlace(at)) {
        run.garage = {
            firstOf(textOf(row["GARAGENAME"]), textOf(row["ADDR1"]), textOf(row["STOPID"])), at};
    }
    return run;
}

MappedStop stopIn(ado::Recordset& row) {
    const auto kind = kindOf(textOf(row["STOPTYPE"]));
    const auto at = placeOf(row);
    auto address = textOf(row["ADDR1"]);
    auto description = textOf(row["DESCRIPTION"]);
    // Schools and garages are known by name.
    const bool byName = kind == StopKind::School || kind == StopKind::Garage;
    if (byName) {
        std::swap(address, description);
    }
    return {.stopTripId = row["ID"].asInteger(),
            .intStopId = row["INT_STOPID"].asInteger(),
            .stopId = textOf(row["STOPID"]),
            .kind = kind,
            .name = firstOf(std::move(address), std::move(description), textOf(row["STOPID"])),
            .at = at,
            .isPlaced = isPlace(at),
            .sequence = static_cast<std::int64_t>(numberOf(row["RUNSEQ"])),
            .students = wholeOf(row["NUM_STUDENTS"]),
            .loadMinutes = numberOf(row["LOAD_TIME"]),
            .legMinutes = numberOf(row["TIME_TOSTOP"]),
            .legMiles = numberOf(row["DIST_TOSTOP"]),
            .wantsRightSide = flagOf(row["RIGHTSIDE"]),
            .time = timeOf(row["TIME_AT_STOP"])};
}

/// On a run to school the bus fills from stop to stop, on a run home it empties.
void countOnTheBus(MappedRun& run) {
    int onTheBus = run.isPickup ? 0 : run.passengers();
    for (auto& stop : run.stops) {
        if (stop.kind == StopKind::Stop) {
            onTheBus += run.isPickup ? stop.students : -stop.students;
        }
        stop.onTheBus = onTheBus;
    }
}

/// The runs that meet a condition, in that order; three statements however many they are.
std::vector<MappedRun> readRuns(ado::Connection& routing, const std::string& condition,
                                std::string_view order) {
    const Seats seats(routing);
    auto runs = ado::readAll(fmt::format("{}{} ORDER BY {}", RunsFrom, condition, order), routing,
                             [&](ado::Recordset& row) { return runIn(row, seats); });
    const auto runOf = [&](const ado::Field& id) {
        return std::ranges::find_if(runs, [key = textOf(id)](const MappedRun& run) {
            return base::equalsNoCase(run.id, key);
        });
    };
    ado::Recordset row(
        fmt::format("{}{} ORDER BY STOP_TRIPTYPE.RUN, STOP_TRIPTYPE.RUNSEQ, STOP_TRIPTYPE.ID",
                    StopsFrom, condition),
        routing);
    for (; !row.Eof(); row.MoveNext()) {
        if (const auto run = runOf(row["RUN"]); run != runs.end()) {
            run->stops.push_back(stopIn(row));
        }
    }
    row.Close();
    row.Open(fmt::format("{}{}", FindingsFrom, condition), routing);
    for (; !row.Eof(); row.MoveNext()) {
        if (const auto run = runOf(row["RUN"]); run != runs.end()) {
            run->findings.push_back({textOf(row["WARNINGTYPE"]), textOf(row["WARNINGTEXT"])});
        }
    }
    std::ranges::for_each(runs, countOnTheBus);
    return runs;
}

}  // namespace

bool isFixed(const MappedStop& stop) {
    return stop.kind == StopKind::School || stop.kind == StopKind::Garage;
}

int MappedRun::passengers() const {
    int sum = 0;
    for (const auto& stop : stops) {
        sum += stop.kind == StopKind::Stop ? stop.students : 0;
    }
    return sum;
}

int MappedRun::numberOf(std::size_t stop) const {
    if (stop >= stops.size() || stops[stop].kind != StopKind::Stop) {
        return 0;
    }
    const auto last = stops.begin() + static_cast<std::ptrdiff_t>(stop) + 1;
    return static_cast<int>(std::count_if(
        stops.begin(), last, [](const MappedStop& one) { return one.kind == StopKind::Stop; }));
}

int MappedRun::numberedStops() const {
    return static_cast<int>(std::ranges::count(stops, StopKind::Stop, &MappedStop::kind));
}

std::string headingOf(const MappedRun& run) {
    return run.description.empty() ? fmt::format("Run {}", run.id)
                                   : fmt::format("Run {}: {}", run.id, run.description);
}

std::string subjectOf(const MappedRun& run) {
    std::string text;
    const auto add = [&text](std::string_view label, std::string_view part) {
        if (!part.empty()) {
            text += (text.empty() ? "" : " · ") + std::string(label) + std::string(part);
        }
    };
    add("", run.schoolName.empty() ? run.school : run.schoolName);
    add("", run.tripType);
    add("Bus ", run.vehicle);
    add("bell ", run.bell ? run.bell->hhmm() : "");
    return text;
}

std::string ridersAt(const MappedRun& run, const MappedStop& stop) {
    return fmt::format("{} {}", stop.students,
                       run.isPickup ? (stop.students == 1 ? "boards" : "board")
                                    : (stop.students == 1 ? "leaves" : "leave"));
}

std::string spokenStop(const MappedRun& run, std::size_t stop, const std::string& side) {
    const auto& at = run.stops[stop];
    const int number = run.numberOf(stop);
    std::string text = number == 0
                           ? at.name
                           : fmt::format("Stop {} of {}, {}", number, run.numberedStops(), at.name);
    text += at.time ? ", " + at.time->hhmm() : "";
    text += number == 0 || side.empty() ? "" : ", " + side;
    text += number == 0 ? "" : ", " + ridersAt(run, at);
    return text + (at.isPlaced ? "" : ", not on the map");
}

std::optional<MappedRun> readMappedRun(ado::Connection& routing, const std::string& run) {
    auto runs = readRuns(routing, fmt::format("RUN.RUN='{}'", ado::escaped(run)), "RUN.RUN");
    return runs.empty() ? std::nullopt : std::optional(std::move(runs.front()));
}

double longestRide(ado::Connection& routing) {
    ado::Recordset district("SELECT District.MaxRideTime FROM District", routing);
    return district.Eof() ? 0 : numberOf(district["MaxRideTime"]);
}

std::vector<MappedRun> readRunsOfSchool(ado::Connection& routing, const MappedRun& like) {
    return readRuns(routing,
                    fmt::format("RUN.SCHOOL='{}' AND RUN.TRIPTYPE='{}'", ado::escaped(like.school),
                                ado::escaped(like.tripType)),
                    "RUN.RUN");
}

std::vector<MappedRun> readRunsOfRoute(ado::Connection& routing, std::int64_t routeKey) {
    return routeKey == 0 ? std::vector<MappedRun>{}
                         : readRuns(routing, fmt::format("RUN.INT_ROUTEID={}", routeKey),
                                    "RUN.STARTTIME, RUN.RUN");
}

}  // namespace map
