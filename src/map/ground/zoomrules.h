#pragma once

#include "streets/base/streetmap.h"

/// What is shown at which scale, in feet a pixel.
namespace map {

/// A street of the class is shown below this scale.
[[nodiscard]] double shownBelow(streets::StreetClass kind);
/// And named below this one; 0 is never.
[[nodiscard]] double namedBelow(streets::StreetClass kind);
[[nodiscard]] double shownBelow(streets::GroundKind kind);

inline constexpr double OneWayArrowsBelow = 7;
inline constexpr double HousesBelow = 1.6;
inline constexpr double HomesBelow = 16;  ///< of students
inline constexpr double ShortNamesAbove = 5;  ///< streets are named "N High St" from here on

/// The width of a street of the class, in pixels.
[[nodiscard]] double streetWidth(streets::StreetClass kind, double feetPerPixel);

/// The classes from the narrowest to the broadest, as they are painted.
[[nodiscard]] int rankOf(streets::StreetClass kind);

}  // namespace map
