#include "stops/sequence/stoplog.h"

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"

namespace stops {

std::string addedText(std::string_view stopId, std::int64_t sequence) {
    return fmt::format(
        "Stop added to run: {} with the sequence of: {}.  Stop Added in Add/Remove Stops Screen.",
        stopId, sequence);
}

std::string removedText(std::string_view stopId, std::int64_t sequence) {
    return fmt::format(
        "Stop removed from run: {} the sequence was: {}.  Stop removed in Stop Add/Remove Screen.",
        stopId, sequence);
}

std::string movedText(std::string_view stopId, std::string_view way, std::int64_t oldSequence,
                      std::int64_t newSequence) {
    return fmt::format(
        "Stop's sequence in the run: {} was changed - moved {}.  The old sequence was: {}.  The "
        "new sequence is: {}.",
        stopId, way, oldSequence, newSequence);
}

std::string mergedText(std::string_view fromRun, std::int64_t sequence, std::string_view toRun,
                       std::int64_t newSequence) {
    return fmt::format(
        "Stop Merged From run: {} with the sequence of: {} to new run: {} with a new sequence of: "
        "{}",
        fromRun, sequence, toRun, newSequence);
}

StopLog::StopLog(ado::Connection& connection, const EditedRun& run) : run_(run) {
    log_.Open("Select RunLog.* from RunLog Where RunLog.ID=0", connection);
}

void StopLog::added(const RunStop& stop) {
    append(stop, data::activity::Added, addedText(stop.stopId, stop.sequence));
}

void StopLog::removed(const RunStop& stop) {
    append(stop, data::activity::Removed, removedText(stop.stopId, stop.sequence));
}

void StopLog::movedToEnd(const RunStop& stop) {
    append(stop, data::activity::Moved, movedText(stop.stopId, "up to top", stop.sequence, 1));
}

void StopLog::movedBy(const RunStop& stop, std::int64_t newSequence, std::ptrdiff_t places,
                      bool up) {
    const auto way =
        fmt::format("{} {}", up ? "up" : "down", places == 1 ? "one" : std::to_string(places));
    append(stop, data::activity::Moved, movedText(stop.stopId, way, stop.sequence, newSequence));
}

void StopLog::merged(const RunStop& stop, const std::string& fromRun, std::int64_t newSequence) {
    append(stop, data::activity::Merged, mergedText(run_.run, stop.sequence, fromRun, newSequence));
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
