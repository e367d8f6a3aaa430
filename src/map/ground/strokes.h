#pragma once

#include <cstdint>
#include <vector>

#include "streets/base/streetmap.h"

namespace map {

/// Street pieces joined end to end: of one name, one class and one manner of driving.
struct JoinedStroke {
    streets::StreetClass kind = streets::StreetClass::Residential;
    std::uint32_t name = 0;
    std::uint32_t firstPoint = 0;
    std::uint32_t points = 0;
    bool oneWay = false;  ///< driven along its points only
    bool closed = false;
    streets::Box box = {};
};

struct JoinedStrokes {
    std::vector<geo::Feet> points;  ///< of all strokes
    std::vector<JoinedStroke> strokes;
};

/// Every piece is in one stroke. Where several go on, the straightest does. `closed` are pieces,
/// ascending.
[[nodiscard]] JoinedStrokes joinedStrokes(const streets::StreetMap& streets,
                                          const std::vector<std::uint32_t>& closed);

}  // namespace map
