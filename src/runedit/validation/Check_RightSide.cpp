#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "runedit/validation/rules.h"

namespace runedit {

namespace {

std::vector<std::string> sideReads(const StopRows& stops) {
    std::vector<std::string> reads;
    reads.reserve(stops.size());
    for (const StopRow& stop : stops) {
        reads.push_back(fmt::format("SELECT STOP.RIGHTSIDE from STOP Where Stop.STOPID='{}'",
                                    ado::escaped(stop.stopId)));
    }
    return reads;
}

std::string notServedFromTheRight(std::string_view run) {
    return regularStopsOf(run) + " and STOP_TRIPTYPE.RUN_PICKUP_SIDE<>'right'";
}

bool isRightSideOnly(const std::string& sideRead, ado::Connection& routing) {
    ado::Recordset row(sideRead, routing);
    return !row.Eof() && yesNoOf(row["RightSide"]);
}

}  // namespace

Finding servedFromTheLeft(const StopRow& stop) {
    // The asterisks at the end are part of the text.
    return {stop.run, fmt::format("StopID: {} was marked as Right Hand Side Pickup Only and the "
                                  "run currently picks up the stop on the left side.  *** ",
                                  stop.stopId)};
}

std::vector<std::string> rightSideReads(const CheckedRun& run) {
    return {stopsSql(notServedFromTheRight(run.run))};
}

Findings Check_RightSide(const CheckedRun& run, const ValidationDatabases& databases) {
    const StopRows stops = readStops(databases.routing, notServedFromTheRight(run.run));
    const auto sides = sideReads(stops);
    const ado::ReadAhead ahead(databases.routing, sides, ado::ReadAhead::Until::End);
    Findings findings;
    for (std::size_t i = 0; i < stops.size(); ++i) {
        if (isRightSideOnly(sides[i], databases.routing)) {
            findings.push_back(servedFromTheLeft(stops[i]));
        }
    }
    return findings;
}

}  // namespace runedit
