#pragma once

#include <optional>
#include <vector>

#include "platform/geo/projection.h"

namespace tools::district {

/// How far along a line of points each stop lies, in feet from its beginning, never backwards: the
/// places for which the squares of the stops' distances from the line are least in sum. Nothing for
/// a line of fewer than two points.
[[nodiscard]] std::optional<std::vector<double>> placesAlong(const std::vector<geo::Feet>& line,
                                                             const std::vector<geo::Feet>& stops);

[[nodiscard]] double distance(geo::Feet from, geo::Feet to);

}  // namespace tools::district
