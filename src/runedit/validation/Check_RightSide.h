#pragma once

#include <string>
#include <vector>

#include "runedit/validation/checkedrun.h"
#include "runedit/validation/finding.h"
#include "runedit/validation/stoprows.h"

namespace runedit {

/// Rule: a stop that is marked for it is served from the right-hand side only. The finding about
/// such a stop that a run serves from elsewhere.
[[nodiscard]] Finding servedFromTheLeft(const StopRow& stop);

/// Finds the regular stops of the stored run that it does not serve from the right although they
/// are marked. A stop whose side is unknown (Null) is not looked at.
/// Cost: one statement for the stops, one more for each stop that is not served from the right.
[[nodiscard]] Findings Check_RightSide(const CheckedRun& run, const ValidationDatabases& databases);
/// The statements that it opens of the routing file, as far as the run itself decides them.
[[nodiscard]] std::vector<std::string> rightSideReads(const CheckedRun& run);

}  // namespace runedit
