#include "runedit/editor/bellcheck.h"

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "runedit/validation/rules.h"

namespace runedit {

namespace {

void deleteBellWarnings(ado::Connection& routing, std::string_view run) {
    routing.executeUncounted(
        fmt::format("DELETE RUNWARNING.* From RUNWARNING WHERE (RUNWARNING.WarningType='LATE BELL' "
                    "OR RUNWARNING.WarningType='EARLY BELL') AND RUNWARNING.Run='{}'",
                    ado::escaped(run)));
}

std::string bellStopsSql(std::string_view run) {
    return fmt::format(
        "SELECT STOP_TRIPTYPE.*, STOP.* FROM STOP_TRIPTYPE INNER JOIN STOP ON "
        "STOP_TRIPTYPE.INT_STOPID = STOP.INT_STOPID where STOP.STOPTYPE<>'DIRECTIONAL' and "
        "STOP_TRIPTYPE.RUN='{}'",
        ado::escaped(run));
}

StopRows stopsAgainstBell(ado::Connection& routing, std::string_view run) {
    return ado::readAll(bellStopsSql(run), routing, [](ado::Recordset& rows) {
        StopRow stop;
        stop.stopId = textOf(rows["StopID"]);
        stop.run = textOf(rows["Run"]);
        stop.time = timeOf(rows["Time_At_Stop"]);
        return stop;
    });
}

}  // namespace

bool recordBellCheck(ado::Connection& routing, std::string_view run, BellRule rule,
                     base::Date bell) {
    const bool early = rule == BellRule::NotEarlier;
    ado::CommitOnExit unit(routing, {.reads = {bellStopsSql(run)}, .writesTogether = true});
    deleteBellWarnings(routing, run);
    const auto stops = stopsAgainstBell(routing, run);
    const auto findings = early ? earlierThanBell(stops, bell) : laterThanBell(stops, bell);
    for (const Finding& finding : findings) {
        addRunWarning(routing, early ? "EARLY BELL" : "LATE BELL", finding);
    }
    unit.commit();
    return findings.empty();
}

BellMessage bellMessage(BellRule rule) {
    const bool early = rule == BellRule::NotEarlier;
    return {early ? "Stop Times Earlier than Bell Time." : "Stop Times Later than Bell Time.",
            fmt::format(
                "Oops, one or more stops have times that are{} you indicated that this run is to "
                "honor.{}{} For more information look at the Warnings sections of this screen.",
                early ? " earlier than the bell time" : " later than the bell time",
                early ? "  This run is marked as a drop off run."
                      : "  This run is marked as a pickup run.",
                early ? " So in effect you have this run leaving before the bell time."
                      : " So in effect you have this run arriving after the bell time.")};
}

}  // namespace runedit
