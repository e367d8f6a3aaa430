#include "groupops/deadhead/districtdeadhead.h"

#include <algorithm>
#include <span>

#include <fmt/format.h>

#include "groupops/base/grouploop.h"
#include "platform/table/itemtable.h"
#include "startup/base/fieldvalues.h"

namespace groupops {

namespace {

constexpr auto ResetRuns =
    "UPDATE RUN SET RUN.DEADHEAD_BEFORE_TIME = -2, RUN.DEADHEAD_AFTER_TIME = -2,"
    " RUN.DEADHEAD_BEFORE_STARTTIME = Null, RUN.DEADHEAD_AFTER_STARTTIME = Null,"
    " RUN.SHOW_BOTH_BEG = False, RUN.SHOW_BOTH_END = False";
constexpr auto ResetRoutes = "UPDATE ROUTE SET ROUTE.DEADERROR = TRUE";
constexpr auto CalculationIsDue = "UPDATE SYSTEM SET SYSTEM.NEEDDEADHEADBUILD = TRUE";
constexpr auto AllRoutes = "Select ROUTE.* FROM ROUTE ORDER BY ROUTE.ROUTEID";
constexpr auto RouteCalculated = "UPDATE ROUTE SET ROUTE.DEADERROR = FALSE WHERE INT_ROUTEID = {}";

std::vector<RouteKey> readRoutes(ado::Connection& routing) {
    return ado::readAll(AllRoutes, routing, [](ado::Recordset& row) {
        return RouteKey{std::string(row["RouteID"].textView()), internalId(row["Int_RouteID"]),
                        internalId(row["GARAGE_STOPID"])};
    });
}

/// Marked by a statement of its own: another program's calculation may have marked the route since
/// the routes were read.
std::vector<OpenLeg> calculateAndMark(RouteCalculation& calculation, ado::Connection& routing,
                                      const RouteKey& route) {
    auto open = calculation.calculate(route.route, route.garage);
    if (open.empty()) {
        routing.executeUncounted(fmt::format(RouteCalculated, route.route));
    }
    return open;
}

/// What a route asks first; each time after so many of them the travel of the next ones is read.
std::vector<std::string> readsOf(RouteCalculation& calculation, const std::vector<RouteKey>& routes,
                                 const RouteKey& route) {
    constexpr std::size_t Together = 50;
    const auto place = static_cast<std::size_t>(&route - routes.data());
    if (place % Together == 0) {
        const auto count = std::min(Together, routes.size() - place);
        calculation.readTravelOf(std::span(routes).subspan(place, count));
    }
    return RouteCalculation::readsOf(route.route);
}

/// Not read before: another planner may note at this moment that a calculation is due.
void markCalculated(ado::Connection& routing) {
    routing.executeUncounted(
        fmt::format("UPDATE SYSTEM SET SYSTEM.LASTDEADHEADBUILD = #{}#, "
                    "SYSTEM.NEEDDEADHEADBUILD = FALSE",
                    base::Now().text()));
}

void add(DeadHeadOutcome& outcome, const RouteKey& route, std::vector<OpenLeg> open) {
    outcome.failed += open.empty() ? 0 : 1;
    for (OpenLeg& leg : open) {
        outcome.openLegs.push_back({route.routeId, std::move(leg)});
    }
}

std::string stopName(ado::Connection& routing, std::int32_t id) {
    ado::Recordset stop;
    stop.Open(fmt::format("Select STOP.STOPID FROM STOP WHERE STOP.INT_STOPID = {}", id), routing);
    return stop.Eof() ? fmt::format("stop {}", id) : std::string(stop["STOPID"].textView());
}

std::string missing(const OpenLeg& open, ado::Connection& routing) {
    using enum OpenLeg::Lack;
    const bool before = open.side == OpenLeg::Side::Before;
    switch (open.lack) {
        case Time:
            return before ? "The run has no start time" : "The run has no end time";
        case Stop:
            return open.leg.from < 1 ? "The stop it starts from is not set"
                                     : "The stop it ends at is not set";
        case TooManyRuns:
            return fmt::format("The route has {} runs; {} are possible. It was left as it was",
                               open.runsOfRoute, MaxRunsOfRoute);
        case Travel:
            break;
    }
    return fmt::format("No travel time from {} to {}", stopName(routing, open.leg.from),
                       stopName(routing, open.leg.to));
}

}  // namespace

void resetDeadHead(ado::Connection& routing) {
    for (const auto* statement : {ResetRuns, ResetRoutes, CalculationIsDue}) {
        routing.executeUncounted(statement);
    }
}

DeadHeadOutcome calculateAllRoutes(const DeadHeadData& data, bool reset,
                                   base::ProgressPort& progress) {
    DeadHeadOutcome outcome;
    const auto routes = readRoutes(data.routing);
    outcome.asked = static_cast<int>(routes.size());
    RouteCalculation calculation(data);
    GroupLoop loop(data.routing, progress, deadHeadWording(reset), outcome);
    outcome.wasReset = reset && loop.once([&] { resetDeadHead(data.routing); });
    if (!outcome.stopped) {
        loop.forEach(
            routes,
            [&](const RouteKey& route) {
                loop.worksOn(route.routeId);
                add(outcome, route, calculateAndMark(calculation, data.routing, route));
                return std::optional<LeftOut>();
            },
            [](const RouteKey& route) {
                return fmt::format("Calculating Dead Head Time for all runs in Route: {}.",
                                   route.routeId);
            },
            Telling::Before,
            [&](const RouteKey& route) { return readsOf(calculation, routes, route); });
    }
    if (!outcome.stopped) {
        loop.once([&] { markCalculated(data.routing); });
    }
    return outcome;
}

DeadHeadOutlook deadHeadOutlook(ado::Connection& routing) {
    DeadHeadOutlook outlook;
    ado::Recordset rows;
    rows.Open(
        "SELECT ROUTE.ROUTEID, COUNT(RUN.RUN) AS RUNS FROM ROUTE LEFT JOIN RUN ON "
        "ROUTE.INT_ROUTEID = RUN.INT_ROUTEID GROUP BY ROUTE.INT_ROUTEID, ROUTE.ROUTEID ORDER BY "
        "ROUTE.ROUTEID",
        routing);
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto runs = startup::wholeOf(rows["RUNS"]);
        ++outlook.routes;
        outlook.runs += runs;
        if (runs > MaxRunsOfRoute) {
            outlook.tooMany.emplace_back(rows["ROUTEID"].asText(), runs);
        }
    }
    return outlook;
}

std::vector<std::string> textOf(const DeadHeadOutlook& outlook) {
    std::vector<std::string> lines{
        fmt::format("{} with {} will be calculated.",
                    countOf(static_cast<std::size_t>(outlook.routes), "route"),
                    countOf(static_cast<std::size_t>(outlook.runs), "run"))};
    for (const auto& [route, runs] : outlook.tooMany) {
        lines.push_back(
            fmt::format("Route {} has {} runs; {} are possible. It will be left as it is.", route,
                        runs, MaxRunsOfRoute));
    }
    return lines;
}

std::string closingMessage(const DeadHeadOutcome& outcome) {
    return fmt::format(
        "Dead Head Time calculated for {}.  {} Routes had 1 or more runs where the dead head time "
        "could not be calculated.",
        outcome.done, outcome.failed);
}

Wording deadHeadWording(bool wasReset) {
    return {"route", "calculated and saved", "the calculation",
            fmt::format("The runs of the others are {}.  A calculation of all routes is still due.",
                        wasReset ? "marked as not calculated" : "as they were before")};
}

table::TextTable openLegsTable(const DeadHeadOutcome& outcome, ado::Connection& routing) {
    using Open = const OpenRouteLeg&;
    const auto side = [](Open open) {
        return open.leg.lack == OpenLeg::Lack::TooManyRuns ? ""
               : open.leg.side == OpenLeg::Side::Before    ? "before"
                                                           : "after";
    };
    return table::tableOf<OpenRouteLeg>(
        outcome.openLegs,
        {{"Route", 1200, &OpenRouteLeg::routeId},
         {"Run", 1600, [](Open open) { return open.leg.run; }},
         {"Dead Head", 1300, side},
         {"What Is Missing", 4500, [&](Open open) { return missing(open.leg, routing); }}});
}

std::string lastCalculation(ado::Connection& routing) {
    ado::Recordset system;
    system.Open("Select SYSTEM.* FROM SYSTEM", routing);
    if (system.Eof() || system["LASTDEADHEADBUILD"].isNull()) {
        return "Not calculated yet.";
    }
    return fmt::format(
        "Last calculated {}.{}", system["LASTDEADHEADBUILD"].asText(),
        system["NEEDDEADHEADBUILD"].asBoolean() ? "  A new calculation is due." : "");
}

}  // namespace groupops
