#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "streets/district/districtstreets.h"

namespace map {

/// A place where students may wait for the bus: at the curb of a street, on one of its sides.
struct Spot {
    std::string name = {};
    geo::Feet at = {};
    std::string crossed = {};  ///< the street between it and the address that was asked for
};

/// The spots at the places that the words name, both sides of each, at most so many places. On a
/// network without sides a place is one spot.
[[nodiscard]] std::vector<Spot> spotsFor(const streets::DistrictStreets& streets,
                                         std::string_view words, std::size_t mostPlaces);

}  // namespace map
