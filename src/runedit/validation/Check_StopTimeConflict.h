#pragma once

#include <string>
#include <vector>

#include "runedit/validation/checkedrun.h"
#include "runedit/validation/finding.h"
#include "runedit/validation/stoprows.h"

namespace runedit {

/// The stops of a run whose times can be compared.
inline constexpr int MaxComparedStops = 100;

/// Rule: a run arrives at each stop later than at the ones before. Finds every pair of stops where
/// the one that comes first in sequence has the same or a later time of day; a stop without a time
/// is in no pair. Raises "Subscript out of range" (9) for a 101st stop.
[[nodiscard]] Findings conflictingTimes(const StopRows& stopsInSequence);

/// The same for the stops but turn points of the stored run.
/// Cost: one statement, and half the square of the stops in comparisons.
[[nodiscard]] Findings Check_StopTimeConflict(const CheckedRun& run,
                                              const ValidationDatabases& databases);
/// The statements that it opens of the routing file, as far as the run itself decides them.
[[nodiscard]] std::vector<std::string> stopTimeReads(const CheckedRun& run);

}  // namespace runedit
