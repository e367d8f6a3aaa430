#pragma once

#include <vector>

#include "map/drawing/scene.h"

namespace map {

/// The lane of each segment of each leg of a run; 0 is the one next to the middle of the street.
using RunLanes = std::vector<std::vector<int>>;

/// Puts runs that drive a street the same way side by side. A run keeps its lane as long as it
/// shares the street and nobody else has the lane.
[[nodiscard]] std::vector<RunLanes> lanesOf(const std::vector<DrawnRun>& runs);

}  // namespace map
