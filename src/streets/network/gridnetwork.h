#pragma once

#include <memory>
#include <string>

#include "streets/network/network.h"

namespace streets {

/// Streets as a rule: numbered streets run east and west, numbered avenues north and south, a block
/// apart, and a bus gets from anywhere to anywhere along them at one speed. Turns and sides do not
/// count.
struct GridRule {
    double blockFeet = 1320;
    double feetPerSecond = 88.0 / 3;  ///< 20 miles an hour
};

/// A leg goes along the street of its beginning, then along the avenue of its end.
[[nodiscard]] std::unique_ptr<const Network> gridNetwork(const GridRule& rule);

/// The number of the block at so many feet, from 1; to the left of the plane's zero 0 and less.
[[nodiscard]] int gridBlock(double feet, double blockFeet);
/// "14th Street": the street at that height of the plane, in feet.
[[nodiscard]] std::string gridStreet(double y, double blockFeet);
/// "9th Avenue".
[[nodiscard]] std::string gridAvenue(double x, double blockFeet);

}  // namespace streets
