#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "streets/network/network.h"

namespace streets {

/// How a street is come to from the one before.
enum class Approach {
    Begin,       ///< nothing was driven before
    Straight,    ///< another name, the same way
    Turn,        ///< by its angle
    Stay,        ///< the street turns by itself where others begin
    Roundabout,  ///< by its exit
    TurnBack     ///< onto the same street, the other way
};

/// What a driver takes as one: the pieces of a street until the next one.
struct Drive {
    std::string_view name;
    double feet = 0;
    double headingIn = 0;   ///< degrees
    double headingOut = 0;  ///< degrees
    StreetClass kind = StreetClass::Residential;
    Approach approach = Approach::Begin;
    double angle = 0;      ///< degrees at its beginning; left is negative
    int exit = 0;          ///< of the roundabout before it, from 1
    int crossings = 0;     ///< level crossings on it
    bool signal = false;   ///< at its beginning
    bool deadEnd = false;  ///< the bus turns back where the street ends
    bool roundabout = false;
};

/// Pieces of one street put together: bits without a name, short foreign names and roundabouts go
/// to the streets around them. The feet stay the same in sum.
[[nodiscard]] std::vector<Drive> drivesOf(std::span<const Stretch> stretches);

}  // namespace streets
