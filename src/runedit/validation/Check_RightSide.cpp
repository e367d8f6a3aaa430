#include "runedit/validation/Check_RightSide.h"

#include <fmt/format.h>

#include "platform/ado/sqltext.h"

namespace runedit {

namespace {

bool isRightSideOnly(const std::string& stopId, ado::Connection& routing) {
    ado::Recordset row;
    row.Open(
        fmt::format("SELECT STOP.RIGHTSIDE from STOP Where Stop.STOPID='{}'", ado::escaped(stopId)),
        routing);
    return !row.Eof() && yesNoOf(row["RightSide"]);
}

}  // namespace

Finding servedFromTheLeft(const StopRow& stop) {
    // The asterisks at the end are part of the text.
    return {stop.run, fmt::format("StopID: {} was marked as Right Hand Side Pickup Only and the "
                                  "run currently picks up the stop on the left side.  *** ",
                                  stop.stopId)};
}

Findings Check_RightSide(const CheckedRun& run, const ValidationDatabases& databases) {
    const auto condition = regularStopsOf(run.run) + " and STOP_TRIPTYPE.RUN_PICKUP_SIDE<>'right'";
    Findings findings;
    for (const StopRow& stop : readStops(databases.routing, condition)) {
        if (isRightSideOnly(stop.stopId, databases.routing)) {
            findings.push_back(servedFromTheLeft(stop));
        }
    }
    return findings;
}

}  // namespace runedit
