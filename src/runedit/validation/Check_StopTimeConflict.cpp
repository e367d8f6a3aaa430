#include <fmt/format.h>

#include "platform/base/boundedarray.h"
#include "runedit/validation/rules.h"

namespace runedit {

namespace {

bool conflict(const StopRow& stop, const StopRow& later) {
    return stop.time && later.time && stop.time->timeValue() >= later.time->timeValue();
}

std::string compared(std::string_view run) { return inSequence(run).append("  "); }

std::string message(const StopRow& stop, const StopRow& later) {
    return fmt::format(
        "StopID: {} has an arrival time that is earlier or at the same time as a later stop.  The "
        "stop's arrival time is: {}.  The later stop is: {} with a stop time of: {}.",
        stop.stopId, stop.time->text(), later.stopId, later.time->text());
}

}  // namespace

Findings conflictingTimes(const StopRows& stopsInSequence) {
    base::BoundedArray<const StopRow*, 1, MaxComparedStops> stops;
    int count = 0;
    for (const StopRow& stop : stopsInSequence) {
        stops[++count] = &stop;
    }
    Findings findings;
    for (int i = 1; i < count; ++i) {
        for (int j = i + 1; j <= count; ++j) {
            if (conflict(*stops[i], *stops[j])) {
                findings.push_back({stops[i]->run, message(*stops[i], *stops[j])});
            }
        }
    }
    return findings;
}

std::vector<std::string> stopTimeReads(const CheckedRun& run) {
    return {stopsSql(compared(run.run))};
}

Findings Check_StopTimeConflict(const CheckedRun& run, const ValidationDatabases& databases) {
    return conflictingTimes(readStops(databases.routing, compared(run.run)));
}

}  // namespace runedit
