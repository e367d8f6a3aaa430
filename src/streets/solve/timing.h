#pragma once

#include <cstddef>

#include "streets/solve/solve.h"

namespace streets {

/// The places of the stops that have a time: all but those that are passed.
[[nodiscard]] std::vector<std::size_t> timedStops(const RunToSolve& run);

/// Times every stop from the run's anchor by the rule of gapSeconds, then sets what follows from
/// it: start, end, cumulated minutes and miles, totals, first and last stop. Expects each stop's
/// driving minutes and miles.
void setTimes(const RunToSolve& run, Solution& solution);

}  // namespace streets
