#include "streets/network/shapes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace streets {

namespace {

constexpr double BusFeet = 40;
constexpr double OnTheLine = 1;  // feet

geo::Feet between(geo::Feet a, geo::Feet b, double part) {
    return {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part};
}

double headingOf(geo::Feet from, geo::Feet to) {
    const double degrees = std::atan2(to.x - from.x, to.y - from.y) * 180 / std::numbers::pi;
    return degrees < 0 ? degrees + 360 : degrees;
}

void append(std::vector<geo::Feet>& line, geo::Feet place) {
    if (line.empty() || line.back().x != place.x || line.back().y != place.y) {
        line.push_back(place);
    }
}

}  // namespace

double distance(geo::Feet a, geo::Feet b) {
    const double east = b.x - a.x;
    const double north = b.y - a.y;
    return std::sqrt(east * east + north * north);  // places are never so far that this overflows
}

double lengthOf(std::span<const geo::Feet> points) {
    double feet = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        feet += distance(points[i - 1], points[i]);
    }
    return feet;
}

Shape::Shape(std::span<const geo::Feet> points, bool backward, double feet)
    : points_(points), backward_(backward), drawnPerFoot_(1) {
    drawnPerFoot_ = feet > 0 ? drawnLength() / feet : 1;
}

double Shape::drawnLength() const { return lengthOf(points_); }

geo::Feet Shape::at(double along) const {
    double left = along * drawnPerFoot_;
    for (std::size_t i = 1; i < size(); ++i) {
        const double step = distance(point(i - 1), point(i));
        if (left <= step && step > 0) {
            return between(point(i - 1), point(i), std::max(left, 0.0) / step);
        }
        left -= step;
    }
    return point(size() - 1);
}

double Shape::headingFrom(double along) const {
    const geo::Feet here = at(along);
    const geo::Feet ahead = at(along + BusFeet);
    const bool isEnd = distance(here, ahead) < OnTheLine;
    return isEnd ? headingOf(at(along - BusFeet), here) : headingOf(here, ahead);
}

double Shape::headingTo(double along) const {
    const geo::Feet here = at(along);
    const geo::Feet behind = at(along - BusFeet);
    const bool isBegin = distance(here, behind) < OnTheLine;
    return isBegin ? headingOf(here, at(along + BusFeet)) : headingOf(behind, here);
}

void Shape::appendPart(double from, double to, std::vector<geo::Feet>& line) const {
    append(line, at(from));
    double along = 0;
    for (std::size_t i = 1; i + 1 < size(); ++i) {
        along += distance(point(i - 1), point(i));
        if (along > from * drawnPerFoot_ && along < to * drawnPerFoot_) {
            append(line, point(i));
        }
    }
    append(line, at(to));
}

Foot nearestFoot(std::span<const geo::Feet> points, geo::Feet place) {
    Foot best;
    best.distance = std::numeric_limits<double>::infinity();
    double before = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const geo::Feet a = points[i - 1];
        const geo::Feet b = points[i];
        const double dx = b.x - a.x;
        const double dy = b.y - a.y;
        const double square = dx * dx + dy * dy;
        const double part = square > 0 ? ((place.x - a.x) * dx + (place.y - a.y) * dy) / square : 0;
        const geo::Feet foot = between(a, b, std::clamp(part, 0.0, 1.0));
        const double far = distance(foot, place);
        if (far < best.distance) {
            const double left = dx * (place.y - foot.y) - dy * (place.x - foot.x);
            best = {.at = foot,
                    .along = before + distance(a, foot),
                    .distance = far,
                    .onRight = left <= 0 || far < OnTheLine,
                    .onLeft = left >= 0 || far < OnTheLine};
        }
        before += std::sqrt(square);
    }
    return best;
}

}  // namespace streets
