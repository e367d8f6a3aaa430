#pragma once

#include "platform/ado/connection.h"
#include "tools/map/solver.h"

namespace tools::map {

/// Writes what the map found as one unit of work: distances and times of the run's stops, its
/// directions, its times and totals, and that it needs no solving any more. Stops that are on the
/// run but were not in the export stay as they are. Raises store::StoreError.
void writeResults(ado::Connection& routing, const SolvedRun& solved);

}  // namespace tools::map
