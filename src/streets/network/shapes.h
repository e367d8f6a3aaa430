#pragma once

#include <span>
#include <vector>

#include "platform/geo/projection.h"

namespace streets {

/// The bends of a street in the direction in which it is driven. Places on it are given as feet
/// from its beginning, measured as the street is long (its bends may have been simplified).
class Shape {
public:
    /// `points` are the bends from one end to the other, read from behind where it is driven back.
    Shape(std::span<const geo::Feet> points, bool backward, double feet);

    /// Degrees, 0 is north, 90 east: the way a bus looks that goes on from there for a bus's
    /// length, and the way it looks when it has come there.
    [[nodiscard]] double headingFrom(double along) const;
    [[nodiscard]] double headingTo(double along) const;

    [[nodiscard]] geo::Feet at(double along) const;
    /// Appends the part between two places, both ends included, without equal neighbours.
    void appendPart(double from, double to, std::vector<geo::Feet>& line) const;

private:
    [[nodiscard]] std::size_t size() const { return points_.size(); }
    [[nodiscard]] geo::Feet point(std::size_t i) const {
        return points_[backward_ ? points_.size() - 1 - i : i];
    }
    [[nodiscard]] double drawnLength() const;

    std::span<const geo::Feet> points_;
    bool backward_;
    double drawnPerFoot_;
};

/// The place of a line that is the nearest to another place.
struct Foot {
    geo::Feet at;
    double along = 0;     ///< feet from the line's beginning, as drawn
    double distance = 0;  ///< feet
    bool onRight = true;  ///< the other place lies on the right, or on the line itself
    bool onLeft = false;  ///< on the left, or on the line itself
};

[[nodiscard]] Foot nearestFoot(std::span<const geo::Feet> points, geo::Feet place);
[[nodiscard]] double lengthOf(std::span<const geo::Feet> points);
[[nodiscard]] double distance(geo::Feet a, geo::Feet b);

}  // namespace streets
