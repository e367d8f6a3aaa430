#pragma once

#include "streets/solve/solve.h"
#include "tools/district/travel/model.h"

namespace tools::district {

/// Which end of the run is given.
using streets::Anchor;

/// Sets driving minutes and miles from stop to stop, sequences from 1 on. Directional stops are
/// passed on the way and cost nothing of their own.
void setLegs(Run& run, bool wholeSeconds);

/// Times every stop from the anchor by the rule of streets::gapSeconds, then sets what follows from
/// it: start, end, cumulated minutes and miles, totals.
void setTimes(Run& run, Anchor anchor, base::Date time);

}  // namespace tools::district
