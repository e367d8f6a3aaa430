#include <fmt/format.h>

#include "runedit/validation/rules.h"

namespace runedit {

Findings laterThanBell(const StopRows& stops, base::Date bell) {
    Findings findings;
    for (const StopRow& stop : stops) {
        const auto time = stop.time.value_or(base::Date());
        if (time > bell.timeValue()) {
            findings.push_back(
                {stop.run, fmt::format("StopID: {} has an arrival time that is later than the bell "
                                       "time you have told the run to honor.  The stop's arrival "
                                       "time is: {}.  The bell time is: {}.",
                                       stop.stopId, time.timeValue().text(), bell.text())});
        }
    }
    return findings;
}

std::vector<std::string> lateBellReads(const CheckedRun& run) {
    const bool looks = run.pickup && run.bell;
    return looks ? std::vector{stopsSql(inSequence(run.run))} : std::vector<std::string>();
}

Findings Check_Run_LateBellTime(const CheckedRun& run, const ValidationDatabases& databases) {
    if (!run.pickup || !run.bell) {
        return {};
    }
    return laterThanBell(readStops(databases.routing, inSequence(run.run)), *run.bell);
}

}  // namespace runedit
