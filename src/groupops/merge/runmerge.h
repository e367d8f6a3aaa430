#pragma once

#include <cstdint>
#include <optional>
#include <string>

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

struct MergeOutcome {
    int stops = 0;         ///< of the source run
    int moved = 0;         ///< to the receiving run
    int left = 0;          ///< left alone: another program has moved or deleted them meanwhile
    bool stopped = false;  ///< the planner stopped before the last stop
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
/// runs as they are stored at that moment; after each the progress is told, and the planner may
/// stop. No time is computed. Raises store::StoreError; what was moved until then stays moved.
MergeOutcome mergeRuns(ado::Connection& routing, const RunMerge& merge,
                       base::ProgressPort& progress);

/// What a planner has to know where not all stops were moved; empty where they were.
[[nodiscard]] std::string whatStayed(const RunMerge& merge, const MergeOutcome& outcome);

/// The active runs that a run can be merged with: all but itself.
[[nodiscard]] table::TextTable readOtherRuns(ado::Connection& routing, const std::string& run);

/// "Oak morning, AM, 12 stops"; "" for a run that does not exist.
[[nodiscard]] std::string runSummary(ado::Connection& routing, const std::string& run);

}  // namespace groupops
