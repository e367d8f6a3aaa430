#include "groupops/deadhead/routedeadhead.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "groupops/base/grouploop.h"
#include "platform/ado/session.h"
#include "platform/ado/sqltext.h"
#include "platform/base/error.h"
#include "platform/base/text.h"
#include "startup/base/fieldvalues.h"

namespace groupops {

namespace {

using startup::timeOf;

constexpr auto TravelSql = "SELECT DEADHEAD_CROSS.* FROM DEADHEAD_CROSS WHERE {}";
constexpr auto BetweenSql =
    "(DEADHEAD_CROSS.DEST_INT_STOPID={0} AND DEADHEAD_CROSS.ENDPOINT_INT_STOPID={1}) OR"
    " (DEADHEAD_CROSS.DEST_INT_STOPID={1} AND DEADHEAD_CROSS.ENDPOINT_INT_STOPID={0})";
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
    "SELECT RUN.RUN, RUN.INT_ROUTEID, RUN.FirstStop, RUN.LastStop, RUN.STARTTIME, RUN.ENDTIME FROM"
    " RUN WHERE RUN.INT_ROUTEID IN ({}) ORDER BY RUN.INT_ROUTEID, RUN.STARTTIME, RUN.ENDTIME";
constexpr auto DistrictSql = "SELECT DISTRICT.* FROM DISTRICT";

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

Travel travelIn(ado::Recordset& row) {
    return {figure(row["TRAVEL_MINUTES"]), figure(row["TRAVEL_MILES"])};
}

Travel firstTravel(ado::Connection& cross, const std::string& sql) {
    ado::Recordset rows(sql, cross);
    return rows.Eof() ? Travel{} : travelIn(rows);
}

/// Where no way between two stops is known, the first one that begins at the stop counts.
Travel orAny(ado::Connection& cross, Travel found, std::int32_t from) {
    return found.minutes == NoTravel ? firstTravel(cross, fmt::format(AnyTravelSql, from)) : found;
}

std::string travelSql(Leg leg) {
    return fmt::format(TravelSql, fmt::format(BetweenSql, leg.from, leg.to));
}

/// Always of as many legs, the last one repeated: one statement is prepared for all of them.
std::string travelSql(std::span<const Leg> legs, std::size_t places) {
    std::string between;
    for (std::size_t i = 0; i < places; ++i) {
        const Leg leg = legs[std::min(i, legs.size() - 1)];
        between += (i > 0 ? " OR " : "") + fmt::format(BetweenSql, leg.from, leg.to);
    }
    return fmt::format(TravelSql, between);
}

double backToGarageGap(ado::Connection& routing) {
    ado::Recordset district(DistrictSql, routing);
    return district.Eof() ? 0 : startup::numberOf(district["Back_To_Garage_Gap"]);
}

RouteRun runIn(ado::Recordset& row) {
    return {.run = row["Run"].asText(),
            .firstStop = internalId(row["FirstStop"]),
            .lastStop = internalId(row["LastStop"]),
            .start = timeOf(row["StartTime"]),
            .end = timeOf(row["EndTime"])};
}

int readRuns(ado::Recordset& rows, PerRun<RouteRun>& runs) {
    int count = 0;
    for (; !rows.Eof(); rows.MoveNext()) {
        runs[++count] = runIn(rows);
    }
    return count;
}

bool hasStops(Leg leg) { return leg.from >= 1 && leg.to >= 1; }

/// Straight from run to run, the leg after one is the leg before the other.
bool isKnown(const PerRun<RunLegs>& legs, int run) {
    return run > 1 && legs[run].before == legs[run - 1].after;
}

/// Those with stops at both ends, none twice in a row.
std::vector<Leg> drivenLegs(const PerRun<RunLegs>& legs, int count) {
    std::vector<Leg> driven;
    for (int i = 1; i <= count; ++i) {
        for (const Leg leg : {legs[i].before, legs[i].after}) {
            if (hasStops(leg) && (driven.empty() || !(driven.back() == leg))) {
                driven.push_back(leg);
            }
        }
    }
    return driven;
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

void clear(ado::Connection& routing, std::int32_t route) {
    routing.executeUncounted(fmt::format(ClearSql, route));
}

/// A route that is not calculated to its end keeps none of its former results.
template <class Calculation>
auto clearingOnFault(ado::Connection& routing, std::int32_t route, Calculation calculation) {
    try {
        return calculation();
    } catch (const base::RunTimeError& fault) {
        if (!endedAsAWhole(fault)) {
            clear(routing, route);
        }
        throw;
    }
}

/// What the buses of several routes drive, as their runs stand now.
std::vector<Leg> legsOf(ado::Connection& routing, std::span<const RouteKey> routes, double gap) {
    std::map<std::int32_t, std::vector<RouteRun>> runsOf;
    const auto ids =
        base::joined(routes, ", ", [](const RouteKey& one) { return std::to_string(one.route); });
    for (ado::Recordset rows(fmt::format(RunsSql, ids), routing); !rows.Eof(); rows.MoveNext()) {
        runsOf[internalId(rows["INT_ROUTEID"])].push_back(runIn(rows));
    }
    std::vector<Leg> legs;
    for (const RouteKey& one : routes) {
        PerRun<RouteRun> runs;
        int count = 0;
        for (RouteRun& run : runsOf[one.route]) {
            if (count < MaxRunsOfRoute) {
                runs[++count] = std::move(run);
            }
        }
        const auto driven = drivenLegs(legsOfRoute(runs, count, one.garage, gap), count);
        legs.insert(legs.end(), driven.begin(), driven.end());
    }
    return legs;
}

}  // namespace

std::int32_t internalId(const ado::Field& field) {
    const auto id = startup::wholeOf(field);
    if (id != static_cast<std::int32_t>(id)) {
        base::raise(base::errors::Overflow);
    }
    return static_cast<std::int32_t>(id);
}

Travel readTravel(ado::Connection& cross, std::int32_t a, std::int32_t b) {
    return orAny(cross, firstTravel(cross, travelSql({a, b})), a);
}

RouteCalculation::RouteCalculation(const DeadHeadData& data)
    : data_(data), gap_(backToGarageGap(data.routing)) {}

void RouteCalculation::readTravelOf(std::span<const RouteKey> routes) {
    known_.clear();
    if (!data_.cross.session()->database().sendsTogether()) {
        return;
    }
    try {
        readLegs(legsOf(data_.routing, routes, gap_));
    } catch (const base::RunTimeError& fault) {  // each route meets it again, and tells it
        known_.clear();
        if (fault.number() == store::numberOf(store::Fault::GivenUp)) {
            throw;
        }
    }
}

/// The first row of a pair counts.
void RouteCalculation::readLegs(std::span<const Leg> legs) {
    constexpr std::size_t Together = 30;
    std::vector<std::string> statements;
    for (std::size_t i = 0; i < legs.size(); i += Together) {
        const std::size_t count = std::min(Together, legs.size() - i);
        statements.push_back(travelSql(legs.subspan(i, count), Together));
    }
    const ado::ReadAhead ahead(data_.cross, statements);
    for (const std::string& statement : statements) {
        for (ado::Recordset rows(statement, data_.cross); !rows.Eof(); rows.MoveNext()) {
            known_.emplace(pairOf({internalId(rows["DEST_INT_STOPID"]),
                                   internalId(rows["ENDPOINT_INT_STOPID"])}),
                           travelIn(rows));
        }
    }
    for (const Leg leg : legs) {
        known_.emplace(pairOf(leg), Travel{});
    }
}

std::vector<std::string> RouteCalculation::readsOf(std::int32_t route) {
    return {fmt::format(RunsSql, route)};
}

std::vector<std::string> RouteCalculation::readsOfUnknown(std::span<const Leg> legs) const {
    std::vector<std::string> reads;
    for (const Leg leg : legs) {
        if (!known_.contains(pairOf(leg))) {
            reads.push_back(travelSql(leg));
        }
    }
    return reads;
}

Travel RouteCalculation::travelOf(Leg leg) const {
    if (!hasStops(leg)) {
        return {NoStop, NoStop};
    }
    const auto known = known_.find(pairOf(leg));
    return known == known_.end() ? readTravel(data_.cross, leg.from, leg.to)
                                 : orAny(data_.cross, known->second, leg.from);
}

PerRun<RunDeadHead> RouteCalculation::deadHeadOfRuns(const PerRun<RouteRun>& runs,
                                                     const PerRun<RunLegs>& legs, int count) const {
    const ado::ReadAhead travel(data_.cross, readsOfUnknown(drivenLegs(legs, count)));
    PerRun<RunDeadHead> result;
    for (int i = 1; i <= count; ++i) {
        const Travel before = isKnown(legs, i) ? result[i - 1].after : travelOf(legs[i].before);
        result[i] = deadHeadOf(runs[i], legs[i], before, travelOf(legs[i].after));
    }
    return result;
}

std::vector<OpenLeg> RouteCalculation::calculate(std::int32_t route, std::int32_t garage) {
    ado::CommitOnExit unit(data_.routing, {.reads = readsOf(route), .writesTogether = true});
    ado::Recordset rows(fmt::format(RunsSql, route), data_.routing, ado::CursorType::Static);
    if (const auto found = rows.RecordCount(); found > MaxRunsOfRoute) {
        return {{.lack = OpenLeg::Lack::TooManyRuns, .runsOfRoute = found}};
    }
    PerRun<RouteRun> runs;
    PerRun<RunLegs> legs;
    int count = 0;
    const auto results = clearingOnFault(data_.routing, route, [&] {
        count = readRuns(rows, runs);
        legs = legsOfRoute(runs, count, garage, gap_);
        return deadHeadOfRuns(runs, legs, count);
    });
    for (int i = 1; i <= count; ++i) {
        writeRun(data_.routing, runs[i].run, results[i]);
    }
    unit.commit();
    return openLegs(runs, legs, results, count);
}

std::vector<OpenLeg> calculateRoute(const DeadHeadData& data, std::int32_t route,
                                    std::int32_t garage) {
    auto open = RouteCalculation(data).calculate(route, garage);
    if (!open.empty() && open.front().lack == OpenLeg::Lack::TooManyRuns) {
        clear(data.routing, route);
        base::raise(base::errors::SubscriptOutOfRange);
    }
    return open;
}

}  // namespace groupops
