#pragma once

#include <optional>
#include <string>

#include "groupops/base/outcome.h"
#include "platform/ado/connection.h"
#include "platform/base/ports.h"
#include "platform/table/texttable.h"

/// Moving all stops of one run onto the end of another.
namespace groupops {

struct RunMerge {
    std::string receiving;  ///< the run that gets the stops
    std::string source;     ///< the run that is left without stops
    std::string user;       ///< whom the log names
};

/// What keeps two runs from being merged; blank ids are no run.
enum class MergeObstacle { None, SameRun, NoSource, UnknownSource, UnknownReceiving, NoStops };

[[nodiscard]] MergeObstacle mergeObstacle(ado::Connection& routing, const RunMerge& merge);

struct MergeMessage {
    std::string title;
    std::string text;
};
/// What the planner is told of an obstacle; nothing without one and of a run and itself.
[[nodiscard]] std::optional<MergeMessage> messageOf(MergeObstacle obstacle, const RunMerge& merge);

/// Moves the stops in the order of the source run, behind the last one of the receiving run,
/// numbered on from it. One stop with its row in the run log is one unit of work, based on both
/// runs as they are stored at that moment; see GroupLoop. A stop that another program has moved or
/// deleted meanwhile is left alone. No time is computed. Raises store::StoreError; what was moved
/// until then stays moved.
Outcome mergeRuns(ado::Connection& routing, const RunMerge& merge, base::ProgressPort& progress);

/// How a merge is told.
[[nodiscard]] Wording mergeWording(const RunMerge& merge);

/// The active runs that a run can be merged with: all but itself.
[[nodiscard]] table::TextTable readOtherRuns(ado::Connection& routing, const std::string& run);

}  // namespace groupops
