#pragma once

#include <string>

#include "streets/directions/drives.h"

namespace streets {

inline constexpr double FeetPerMile = 5280;

/// "north", "east", "south", "west": the one that is the nearest to so many degrees.
[[nodiscard]] std::string_view headingName(double degrees);

/// "350 feet", "0.2 miles".
[[nodiscard]] std::string wayLength(double feet);

/// "At the light turn left onto Weber Road, go east". `goesOn` says that the bus has driven before
/// the drive that begins a way.
[[nodiscard]] std::string sentenceOf(const Drive& drive, bool goesOn);
/// "Turn round at the end of Weber Road".
[[nodiscard]] std::string turnBackSentence(const Drive& drive);
/// "left Weber Road".
[[nodiscard]] std::string shortSentenceOf(const Drive& drive);

}  // namespace streets
