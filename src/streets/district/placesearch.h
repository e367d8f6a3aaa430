#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geo/projection.h"
#include "streets/district/districtstreets.h"

namespace streets {

/// A place that words name.
struct FoundPlace {
    enum class Kind {
        Address,  ///< a house of the address table, or between two of them
        Corner,
        Street  ///< its middle
    };
    std::string text;  ///< "1234 North High Street", "Weber Road at Homecroft Drive"
    geo::Feet at;
    Kind kind = Kind::Street;
};

/// Places by what somebody types: "1234 n high st", "weber at homecroft", "weber & homecroft",
/// "weber". Words may be shortened and the last one unfinished. The best come first, at most so
/// many; empty where nothing fits.
[[nodiscard]] std::vector<FoundPlace> findPlaces(const DistrictStreets& streets,
                                                 std::string_view words, std::size_t most);

}  // namespace streets
