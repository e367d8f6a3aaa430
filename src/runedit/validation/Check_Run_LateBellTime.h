#pragma once

#include <string>
#include <vector>

#include "platform/base/date.h"
#include "runedit/validation/checkedrun.h"
#include "runedit/validation/finding.h"
#include "runedit/validation/stoprows.h"

namespace runedit {

/// Rule: a run that brings students to school arrives by the bell. Finds every stop whose time is
/// strictly later than the bell's time of day; a time that is missing counts as midnight. The
/// stop's date counts, so that a run that drives past midnight is understood.
[[nodiscard]] Findings laterThanBell(const StopRows& stops, base::Date bell);

/// The same for the stops but turn points of the stored run, where it brings students to school and
/// has a bell. Cost: one statement.
[[nodiscard]] Findings Check_Run_LateBellTime(const CheckedRun& run,
                                              const ValidationDatabases& databases);
/// The statements that it opens of the routing file, as far as the run itself decides them.
[[nodiscard]] std::vector<std::string> lateBellReads(const CheckedRun& run);

}  // namespace runedit
