#include "map/shown/deadends.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace map {

namespace {

constexpr double FarthestMouth = 1320;  // feet
constexpr double Step = 25;
constexpr double Apart = 15;  ///< two ways that part

double feetBetween(geo::Feet one, geo::Feet other) {
    return std::hypot(other.x - one.x, other.y - one.y);
}

/// Where a line is left after so many feet from its beginning; its end where it is shorter.
geo::Feet placeAlong(const std::vector<geo::Feet>& line, double feet) {
    for (std::size_t i = 1; i < line.size(); ++i) {
        const double piece = feetBetween(line[i - 1], line[i]);
        if (feet < piece) {
            const double share = feet / piece;
            return {line[i - 1].x + (line[i].x - line[i - 1].x) * share,
                    line[i - 1].y + (line[i].y - line[i - 1].y) * share};
        }
        feet -= piece;
    }
    return line.back();
}

double lengthOf(const std::vector<geo::Feet>& line) {
    double feet = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        feet += feetBetween(line[i - 1], line[i]);
    }
    return feet;
}

/// The lines from a turn back to where the bus came from, and on to where it goes.
struct Turned {
    std::vector<geo::Feet> back;
    std::vector<geo::Feet> on;
};

bool turnsAt(const std::vector<geo::Feet>& line, std::size_t i) {
    const double x = line[i].x - line[i - 1].x;
    const double y = line[i].y - line[i - 1].y;
    const double nextX = line[i + 1].x - line[i].x;
    const double nextY = line[i + 1].y - line[i].y;
    return x * nextX + y * nextY < -0.99 * std::hypot(x, y) * std::hypot(nextX, nextY);
}

std::optional<Turned> turnedIn(const std::vector<geo::Feet>& line) {
    for (std::size_t i = 1; i + 1 < line.size(); ++i) {
        if (turnsAt(line, i)) {
            const auto at = line.begin() + static_cast<std::ptrdiff_t>(i);
            Turned turned{{line.begin(), at + 1}, {at, line.end()}};
            std::ranges::reverse(turned.back);
            return turned;
        }
    }
    return std::nullopt;
}

std::optional<geo::Feet> mouthOf(const Turned& turned) {
    const double farthest = std::min({lengthOf(turned.back), lengthOf(turned.on), FarthestMouth});
    for (int step = 1; (step + 1) * Step <= farthest; ++step) {
        const double feet = step * Step;
        const auto on = placeAlong(turned.on, feet);
        if (feetBetween(on, placeAlong(turned.back, feet)) > Apart) {
            return placeAlong(turned.on, feet + Step);
        }
    }
    return std::nullopt;
}

/// The neighbours' ways belong to it: a dead end may begin before the stop that lies in it.
void addNeighbours(const RunWay& way, std::size_t stop, Turned& turned) {
    if (stop > 0) {
        const auto& before = way.drawn[stop - 1].way.line;
        turned.back.insert(turned.back.end(), before.rbegin(), before.rend());
    }
    if (stop + 1 < way.drawn.size()) {
        const auto& behind = way.drawn[stop + 1].way.line;
        turned.on.insert(turned.on.end(), behind.begin(), behind.end());
    }
}

}  // namespace

std::optional<DeadEnd> deadEndBefore(const RunWay& way, std::size_t stop) {
    const auto& leg = way.drawn[stop].way;
    const auto turn = std::ranges::find(leg.stretches, true, &streets::Stretch::unwanted);
    auto turned = turnedIn(leg.line);
    if (turn == leg.stretches.end() || !turned) {
        return std::nullopt;
    }
    const bool isOfStopBefore = stop > 0 && lengthOf(turned->back) < lengthOf(turned->on);
    addNeighbours(way, stop, *turned);
    return DeadEnd{.stop = isOfStopBefore ? stop - 1 : stop,
                   .street = std::string(turn->name),
                   .mouth = mouthOf(*turned)};
}

}  // namespace map
