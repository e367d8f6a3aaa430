#include "groupops/deadhead/routedeadhead.h"

#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "platform/base/error.h"
#include "startup/base/fieldvalues.h"

namespace groupops {

namespace {

using startup::timeOf;

constexpr auto TravelSql =
    "SELECT DEADHEAD_CROSS.* FROM DEADHEAD_CROSS WHERE (DEADHEAD_CROSS.DEST_INT_STOPID={0} AND"
    " DEADHEAD_CROSS.ENDPOINT_INT_STOPID={1}) OR (DEADHEAD_CROSS.DEST_INT_STOPID={1} AND"
    " DEADHEAD_CROSS.ENDPOINT_INT_STOPID={0})";
constexpr auto AnyTravelSql =
    "SELECT DEADHEAD_CROSS.* FROM DEADHEAD_CROSS WHERE (DEADHEAD_CROSS.DEST_INT_STOPID={0} )";
constexpr auto ClearSql =
    "UPDATE RUN SET RUN.DEADHEAD_BEFORE_TIME = 0, RUN.DEADHEAD_AFTER_TIME = 0,"
    " RUN.DEADHEAD_BEFORE_STARTTIME = Null, RUN.DEADHEAD_AFTER_STARTTIME = Null,"
    " RUN.DEADHEAD_MILES_BEFORE=Null, RUN.DEADHEAD_MILES_AFTER=Null, RUN.SHOW_BOTH_BEG = False,"
    " RUN.SHOW_BOTH_END = False WHERE RUN.INT_ROUTEID={}";
/// Only what is read and written: a row is compared in every column before it is written.
constexpr auto WriteSql =
    "UPDATE RUN SET RUN.DEADHEAD_BEFORE_TIME = {}, RUN.DEADHEAD_AFTER_TIME = {},"
    " RUN.DEADHEAD_MILES_BEFORE = {}, RUN.DEADHEAD_MILES_AFTER = {},"
    " RUN.DEADHEAD_BEFORE_STARTTIME = {}, RUN.DEADHEAD_AFTER_STARTTIME = {},"
    " RUN.SHOW_BOTH_BEG = {}, RUN.SHOW_BOTH_END = {} WHERE RUN.RUN='{}'";
constexpr auto RunsSql =
    "SELECT RUN.* FROM RUN WHERE RUN.INT_ROUTEID={} ORDER BY RUN.STARTTIME, RUN.ENDTIME";

constexpr auto DistrictSql = "SELECT DISTRICT.* FROM DISTRICT";
constexpr auto CountSql = "SELECT COUNT(*) AS RUNS FROM RUN WHERE RUN.INT_ROUTEID={}";

float figure(const ado::Field& field) {
    if (field.isNull()) {
        return NoTravel;
    }
    const double number = field.asNumber();
    if (std::abs(number) > static_cast<double>(std::numeric_limits<float>::max())) {
        base::raise(base::errors::Overflow);
    }
    return static_cast<float>(number);
}

Travel firstTravel(ado::Connection& cross, const std::string& sql) {
    ado::Recordset rows;
    rows.Open(sql, cross);
    if (rows.Eof()) {
        return {};
    }
    return {figure(rows["TRAVEL_MINUTES"]), figure(rows["TRAVEL_MILES"])};
}

double backToGarageGap(ado::Connection& routing) {
    ado::Recordset district;
    district.Open(DistrictSql, routing);
    return district.Eof() ? 0 : startup::numberOf(district["Back_To_Garage_Gap"]);
}

int readRuns(ado::Recordset& rows, PerRun<RouteRun>& runs) {
    const ado::Field& run = rows["Run"];
    const ado::Field& firstStop = rows["FirstStop"];
    const ado::Field& lastStop = rows["LastStop"];
    const ado::Field& start = rows["StartTime"];
    const ado::Field& end = rows["EndTime"];
    int count = 0;
    for (; !rows.Eof(); rows.MoveNext()) {
        runs[++count] = {.run = run.asText(),
                         .firstStop = internalId(firstStop),
                         .lastStop = internalId(lastStop),
                         .start = timeOf(start),
                         .end = timeOf(end)};
    }
    return count;
}

bool hasStops(Leg leg) { return leg.from >= 1 && leg.to >= 1; }

Travel travelOf(ado::Connection& cross, Leg leg) {
    return hasStops(leg) ? readTravel(cross, leg.from, leg.to) : Travel{NoStop, NoStop};
}

/// Straight from run to run, the leg after one is the leg before the other.
bool isKnown(const PerRun<RunLegs>& legs, int run) {
    return run > 1 && legs[run].before == legs[run - 1].after;
}

/// What deadHeadOfRuns asks of each leg first.
std::vector<std::string> travelReads(const PerRun<RunLegs>& legs, int count) {
    std::vector<std::string> reads;
    const auto add = [&](Leg leg) {
        if (hasStops(leg)) {
            reads.push_back(fmt::format(TravelSql, leg.from, leg.to));
        }
    };
    for (int i = 1; i <= count; ++i) {
        if (!isKnown(legs, i)) {
            add(legs[i].before);
        }
        add(legs[i].after);
    }
    return reads;
}

PerRun<RunDeadHead> deadHeadOfRuns(ado::Connection& cross, const PerRun<RouteRun>& runs,
                                   const PerRun<RunLegs>& legs, int count) {
    PerRun<RunDeadHead> result;
    for (int i = 1; i <= count; ++i) {
        const Travel before =
            isKnown(legs, i) ? result[i - 1].after : travelOf(cross, legs[i].before);
        result[i] = deadHeadOf(runs[i], legs[i], before, travelOf(cross, legs[i].after));
    }
    return result;
}

std::string literal(float figure) { return base::numberText(base::singleOf(figure)); }

std::string literal(std::optional<base::Date> time) {
    return time ? fmt::format("#{}#", time->text()) : "Null";
}

// A statement, not the recordset: that would compare all columns of RUN at each row.
void writeRun(ado::Connection& routing, const std::string& run, const RunDeadHead& deadHead) {
    routing.executeUncounted(
        fmt::format(WriteSql, literal(deadHead.before.minutes), literal(deadHead.after.minutes),
                    literal(deadHead.before.miles), literal(deadHead.after.miles),
                    literal(deadHead.beforeStart), literal(deadHead.afterStart),
                    deadHead.showBothBeg, deadHead.showBothEnd, ado::escaped(run)));
}

OpenLeg::Lack lackOf(Travel travel) {
    return travel.isKnown()             ? OpenLeg::Lack::Time
           : travel.minutes == NoTravel ? OpenLeg::Lack::Travel
                                        : OpenLeg::Lack::Stop;
}

std::vector<OpenLeg> openLegs(const PerRun<RouteRun>& runs, const PerRun<RunLegs>& legs,
                              const PerRun<RunDeadHead>& results, int count) {
    using enum OpenLeg::Side;
    std::vector<OpenLeg> open;
    for (int i = 1; i <= count; ++i) {
        const RunDeadHead& run = results[i];
        if (!run.beforeStart) {
            open.push_back({runs[i].run, Before, lackOf(run.before), legs[i].before});
        }
        if (!run.afterStart) {
            open.push_back({runs[i].run, After, lackOf(run.after), legs[i].after});
        }
    }
    return open;
}

}  // namespace

std::int32_t internalId(const ado::Field& field) {
    const auto id = startup::wholeOf(field);
    if (id != static_cast<std::int32_t>(id)) {
        base::raise(base::errors::Overflow);
    }
    return static_cast<std::int32_t>(id);
}

std::int64_t runsOfRoute(ado::Connection& routing, std::int32_t route) {
    ado::Recordset runs;
    runs.Open(fmt::format(CountSql, route), routing);
    return startup::wholeOf(runs["RUNS"]);
}

std::vector<std::string> readsOfRoute(std::int32_t route) {
    return {fmt::format(CountSql, route), DistrictSql, fmt::format(RunsSql, route)};
}

Travel readTravel(ado::Connection& cross, std::int32_t a, std::int32_t b) {
    const Travel travel = firstTravel(cross, fmt::format(TravelSql, a, b));
    return travel.minutes == NoTravel ? firstTravel(cross, fmt::format(AnyTravelSql, a)) : travel;
}

std::vector<OpenLeg> calculateRoute(const DeadHeadData& data, std::int32_t route,
                                    std::int32_t garage) {
    ado::CommitOnExit unit(data.routing, {.reads = {DistrictSql, fmt::format(RunsSql, route)},
                                          .writesTogether = true});
    const double gap = backToGarageGap(data.routing);
    data.routing.executeUncounted(fmt::format(ClearSql, route));
    ado::Recordset rows;
    rows.Open(fmt::format(RunsSql, route), data.routing);
    PerRun<RouteRun> runs;
    const int count = readRuns(rows, runs);
    const auto legs = legsOfRoute(runs, count, garage, gap);
    const ado::ReadAhead travel(data.cross, travelReads(legs, count));
    const auto results = deadHeadOfRuns(data.cross, runs, legs, count);
    for (int i = 1; i <= count; ++i) {
        writeRun(data.routing, runs[i].run, results[i]);
    }
    unit.commit();
    return openLegs(runs, legs, results, count);
}

}  // namespace groupops
