#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/geo/projection.h"

namespace tools::extract {

[[nodiscard]] double feetBetween(const geo::Feet& one, const geo::Feet& other);
[[nodiscard]] double lengthOf(std::span<const geo::Feet> line);

/// The places of a line of points, by their numbers.
[[nodiscard]] std::vector<geo::Feet> placesAlong(std::span<const std::uint32_t> line,
                                                 std::span<const geo::Feet> places);

/// The line without points that lie at most so many feet off it; its ends stay.
[[nodiscard]] std::vector<std::uint32_t> thinned(std::span<const std::uint32_t> line,
                                                 std::span<const geo::Feet> places, double feet);

/// Square feet within a ring.
[[nodiscard]] double areaOf(std::span<const geo::Feet> ring);

/// Joins lines of points, by their numbers, to rings wherever their ends meet. What is left open
/// because lines are missing is joined where the gaps are the smallest.
[[nodiscard]] std::vector<std::vector<std::uint32_t>> joinedRings(
    std::vector<std::vector<std::uint32_t>> lines, std::span<const geo::Feet> places);

/// A number by which near places come close to each other, for places within 800 miles.
[[nodiscard]] std::uint64_t placeOrder(const geo::Feet& fromCentre);

}  // namespace tools::extract
