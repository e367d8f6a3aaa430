#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/district/travel/model.h"

namespace tools::district {

/// A line of a run's driving directions.
struct DirectionLine {
    const Stop* stop = nullptr;  ///< the stop that the line leads to or stands at
    std::string_view type;       ///< "Start", "Direction", "Turn Back", "Landmark", "Stop", "Total"
    std::string text1;
    std::string text2;  ///< distance, time, or "SKIP" where there is nothing to say
    std::string shortText;
    std::string shortDistance;
};

/// The way from stop to stop along the grid: first along the street, then along the avenue. Stops
/// without a place are named, but nothing leads to them. Empty for a run without stops.
[[nodiscard]] std::vector<DirectionLine> directionsOf(const Run& run);

}  // namespace tools::district
