#pragma once

#include <string>

#include "platform/geo/projection.h"

namespace tools::district {

using Point = geo::Feet;

inline constexpr double FeetPerMile = 5280;

/// Travel goes along the street grid at 20 miles an hour.
[[nodiscard]] double feetBetween(Point a, Point b);
/// Minutes of driving, unrounded.
[[nodiscard]] double driveMinutes(Point a, Point b);
/// The same at whole seconds.
[[nodiscard]] double driveMinutesAtSeconds(Point a, Point b);
/// Miles to two decimals.
[[nodiscard]] double milesBetween(Point a, Point b);

/// Minutes to board that many students, in single precision: 19 seconds and 2.6 for each.
[[nodiscard]] double boardingMinutes(int students);
/// Minutes to empty (or fill) a bus at a school: 29 seconds and 1.9 for each
/// of its seats.
[[nodiscard]] double schoolMinutes(int seats = 66);

/// Numbered streets run east and west, numbered avenues north and south, four to the mile.
[[nodiscard]] std::string streetName(double y);
[[nodiscard]] std::string avenueName(double x);
/// "1320 14th Street": the house on the street at that place.
[[nodiscard]] std::string addressAt(Point at);
/// "14th Street at 9th Avenue".
[[nodiscard]] std::string cornerAt(Point at);

}  // namespace tools::district
