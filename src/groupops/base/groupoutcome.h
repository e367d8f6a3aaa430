#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace groupops {

/// What an operation on a group of runs has done. A run is either written whole or left as it was.
struct GroupOutcome {
    int asked = 0;                        ///< runs that were to be changed
    int changed = 0;                      ///< runs that are written
    std::vector<std::string> gone;        ///< runs that another program has deleted meanwhile
    std::vector<std::string> withoutEnd;  ///< runs left alone: they have no end time to keep
    bool stopped = false;                 ///< the planner stopped before the last run
};

/// "1 run", "2 runs".
[[nodiscard]] std::string runCount(std::size_t count);
/// "3 runs are selected in the run list."
[[nodiscard]] std::string selectedText(std::size_t count);
/// "A, B, C and 5 more".
[[nodiscard]] std::string someOf(const std::vector<std::string>& ids);

/// What a planner has to know where not every run was changed: how many were, how many were not and
/// why, and the ids of those that could not be. Empty when all went well.
[[nodiscard]] std::string whatWasLeft(const GroupOutcome& outcome);

}  // namespace groupops
