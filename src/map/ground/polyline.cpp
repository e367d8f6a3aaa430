#include "map/ground/polyline.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace map {

namespace {

QPointF unit(QPointF way) {
    const double length = lengthOf(way);
    return length > 0 ? way / length : QPointF(1, 0);
}

/// Both as shares of the segment.
struct Inside {
    double from;
    double to;
};

/// What of a segment is inside, after Liang and Barsky.
std::optional<Inside> insideOf(QPointF begin, QPointF end, const QRectF& box) {
    const QPointF way = end - begin;
    Inside inside{0, 1};
    const auto cut = [&](double step, double distance) {
        if (step == 0) {
            return distance >= 0;
        }
        const double at = distance / step;
        (step < 0 ? inside.from : inside.to) =
            step < 0 ? std::max(inside.from, at) : std::min(inside.to, at);
        return inside.from <= inside.to;
    };
    const bool isSeen =
        cut(-way.x(), begin.x() - box.left()) && cut(way.x(), box.right() - begin.x()) &&
        cut(-way.y(), begin.y() - box.top()) && cut(way.y(), box.bottom() - begin.y());
    return isSeen ? std::optional(inside) : std::nullopt;
}

double distanceToSegment(QPointF place, QPointF begin, QPointF end) {
    const QPointF way = end - begin;
    const double square = dot(way, way);
    const double share = square > 0 ? std::clamp(dot(place - begin, way) / square, 0.0, 1.0) : 0;
    return lengthOf(place - begin - way * share);
}

/// Where two neighbours of a line beside another one meet; a sharp corner is cut.
void corner(Line& to, QPointF at, QPointF before, QPointF behind, double left, double right) {
    constexpr double Sharp = -0.5;  // cosine
    const QPointF first = at + rightOf(before) * left;
    const QPointF second = at + rightOf(behind) * right;
    const double cosine = dot(before, behind);
    if (left == right && cosine > Sharp) {
        to.push_back(at + (rightOf(before) + rightOf(behind)) * (left / (1 + cosine)));
        return;
    }
    to.push_back(first);
    to.push_back(second);
}

}  // namespace

double lengthOf(QPointF way) { return std::hypot(way.x(), way.y()); }

MeasuredLine::MeasuredLine(Line points) : points_(std::move(points)) {
    double length = 0;
    for (std::size_t i = 1; i < points_.size(); ++i) {
        length += lengthOf(points_[i] - points_[i - 1]);
        ends_.push_back(length);
    }
}

LinePlace MeasuredLine::at(double pixels) const {
    if (ends_.empty()) {
        return {points_.empty() ? QPointF() : points_.front(), {1, 0}};
    }
    const double there = std::clamp(pixels, 0.0, length());
    const auto found = std::ranges::lower_bound(ends_, there);
    const auto i = static_cast<std::size_t>(std::min(found, ends_.end() - 1) - ends_.begin());
    const QPointF along = unit(points_[i + 1] - points_[i]);
    return {points_[i + 1] - along * (ends_[i] - there), along};
}

std::vector<LinePart> clipped(std::span<const QPointF> line, const QRectF& to) {
    std::vector<LinePart> parts;
    double walked = 0;
    bool isOpen = false;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const QPointF way = line[i] - line[i - 1];
        const double length = lengthOf(way);
        const auto inside = insideOf(line[i - 1], line[i], to);
        if (!inside || inside->from > 0) {
            isOpen = false;
        }
        if (inside) {
            if (!isOpen) {
                parts.push_back(
                    {{line[i - 1] + way * inside->from}, walked + length * inside->from});
            }
            parts.back().points.push_back(line[i - 1] + way * inside->to);
            isOpen = inside->to >= 1;
        }
        walked += length;
    }
    return parts;
}

std::vector<LinePlace> placesAlong(const LinePart& part, double apart) {
    const MeasuredLine line(part.points);
    const double half = apart / 2;
    const double first = half + std::ceil((part.from - half) / apart) * apart - part.from;
    const int count = std::max(0, static_cast<int>(std::ceil((line.length() - first) / apart)));
    std::vector<LinePlace> places;
    places.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        places.push_back(line.at(first + i * apart));
    }
    return places;
}

Line simplified(std::span<const QPointF> line, double pixels) {
    std::vector<bool> keeps(line.size());
    std::vector<std::pair<std::size_t, std::size_t>> open;
    if (!line.empty()) {
        keeps.front() = keeps.back() = true;
        open.emplace_back(0, line.size() - 1);
    }
    while (!open.empty()) {
        const auto [from, to] = open.back();
        open.pop_back();
        double farthest = pixels;
        std::size_t at = 0;
        for (std::size_t i = from + 1; i < to; ++i) {
            const double distance = distanceToSegment(line[i], line[from], line[to]);
            if (distance > farthest) {
                farthest = distance;
                at = i;
            }
        }
        if (at != 0) {
            keeps[at] = true;
            open.emplace_back(from, at);
            open.emplace_back(at, to);
        }
    }
    Line kept;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (keeps[i]) {
            kept.push_back(line[i]);
        }
    }
    return kept;
}

Line beside(std::span<const QPointF> line, std::span<const double> pixels) {
    Line result;
    std::optional<QPointF> before;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const QPointF along = unit(line[i] - line[i - 1]);
        const double aside = pixels[i - 1];
        if (before) {
            corner(result, line[i - 1], *before, along, pixels[i - 2], aside);
        } else {
            result.push_back(line[0] + rightOf(along) * aside);
        }
        before = along;
    }
    if (before) {
        result.push_back(line.back() + rightOf(*before) * pixels.back());
    }
    return result;
}

Line beside(std::span<const QPointF> line, double pixels) {
    return beside(line, std::vector<double>(line.empty() ? 0 : line.size() - 1, pixels));
}

double distanceTo(std::span<const QPointF> line, QPointF place) {
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < line.size(); ++i) {
        nearest = std::min(nearest, distanceToSegment(place, line[i - 1], line[i]));
    }
    return nearest;
}

}  // namespace map
