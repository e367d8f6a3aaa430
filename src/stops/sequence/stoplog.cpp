#include "stops/sequence/stoplog.h"

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"

namespace stops {

StopLog::StopLog(ado::Connection& connection, const EditedRun& run) : run_(run) {
    log_.Open("Select RunLog.* from RunLog Where RunLog.ID=0", connection);
}

void StopLog::added(const RunStop& stop) {
    append(stop, data::activity::Added,
           fmt::format("Stop added to run: {} with the sequence of: {}.  Stop Added in Add/Remove "
                       "Stops Screen.",
                       stop.stopId, stop.sequence));
}

void StopLog::removed(const RunStop& stop) {
    append(stop, data::activity::Removed,
           fmt::format("Stop removed from run: {} the sequence was: {}.  Stop removed in Stop "
                       "Add/Remove Screen.",
                       stop.stopId, stop.sequence));
}

void StopLog::movedToEnd(const RunStop& stop) {
    append(stop, data::activity::Moved,
           fmt::format("Stop's sequence in the run: {} was changed - moved up to top.  The old "
                       "sequence was: {}.  The new sequence is: 1.",
                       stop.stopId, stop.sequence));
}

void StopLog::movedByOne(const RunStop& stop, std::int64_t newSequence, bool up) {
    append(stop, data::activity::Moved,
           fmt::format("Stop's sequence in the run: {} was changed - moved {} one.  The old "
                       "sequence was: {}.  The new sequence is: {}.",
                       stop.stopId, up ? "up" : "down", stop.sequence, newSequence));
}

void StopLog::merged(const RunStop& stop, const std::string& fromRun, std::int64_t newSequence) {
    append(
        stop, data::activity::Merged,
        fmt::format("Stop Merged From run: {} with the sequence of: {} to new run: {} with a new "
                    "sequence of: {}",
                    run_.run, stop.sequence, fromRun, newSequence));
}

/// The internal key is logged for regular stops only.
void StopLog::append(const RunStop& stop, int activity, const std::string& description) {
    log_.AddNew();
    log_["RunID"].Value(run_.run);
    if (base::equalsNoCase(base::trim(stop.stopType), data::stoptype::Regular)) {
        log_["Int_STOPID"].Value(stop.intStopId);
    }
    log_["StopID"].Value(stop.stopId);
    log_["TripType"].Value(stop.tripType);
    log_["LogDate"].Value(base::Now());
    log_["User"].Value(run_.user);
    log_["ActivityCode"].Value(activity);
    log_["Description"].Value(description);
    log_.Update();
}

}  // namespace stops
