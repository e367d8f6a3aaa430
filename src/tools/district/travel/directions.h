#pragma once

#include <vector>

#include "streets/directions/directions.h"
#include "tools/district/travel/model.h"

namespace tools::district {

/// The way from stop to stop along the grid: first along the street, then along the avenue. Stops
/// without a place are named, but nothing leads to them. Empty for a run without stops.
[[nodiscard]] std::vector<streets::DirectionLine> directionsOf(const Run& run);

}  // namespace tools::district
