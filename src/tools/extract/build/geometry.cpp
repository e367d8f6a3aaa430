#include "tools/extract/build/geometry.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace tools::extract {

namespace {

using Line = std::vector<std::uint32_t>;

double feetOffLine(const geo::Feet& at, const geo::Feet& from, const geo::Feet& to) {
    const double right = to.x - from.x;
    const double up = to.y - from.y;
    const double square = right * right + up * up;
    const double share =
        square > 0 ? std::clamp(((at.x - from.x) * right + (at.y - from.y) * up) / square, 0.0, 1.0)
                   : 0;
    return feetBetween(at, {from.x + share * right, from.y + share * up});
}

/// The point between two others that lies farthest off the line between them.
std::pair<std::size_t, double> farthest(std::span<const geo::Feet> line, std::size_t first,
                                        std::size_t last) {
    std::pair<std::size_t, double> most{first, -1};
    for (std::size_t i = first + 1; i < last; ++i) {
        if (const double off = feetOffLine(line[i], line[first], line[last]); off > most.second) {
            most = {i, off};
        }
    }
    return most;
}

bool isRing(const Line& line) { return line.size() > 2 && line.front() == line.back(); }

void append(Line& line, const Line& more) {
    line.insert(line.end(), line.back() == more.front() ? more.begin() + 1 : more.begin(),
                more.end());
}

/// Lines that are joined end to end, by the points where they end.
class Joiner {
public:
    explicit Joiner(std::vector<Line> lines) : lines_(std::move(lines)) {
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            ends_.emplace(lines_[i].front(), i);
            ends_.emplace(lines_[i].back(), i);
        }
        used_.assign(lines_.size(), false);
    }

    /// Each line once, as long as others go on where it ends.
    std::vector<Line> joined() {
        std::vector<Line> all;
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            if (!used_[i]) {
                used_[i] = true;
                all.push_back(grown(lines_[i]));
            }
        }
        return all;
    }

private:
    Line grown(Line line) {
        for (int end = 0; end < 2; ++end) {
            while (!isRing(line) && takeNext(line)) {
            }
            std::ranges::reverse(line);
        }
        return line;
    }

    bool takeNext(Line& line) {
        const auto [first, last] = ends_.equal_range(line.back());
        for (auto at = first; at != last; ++at) {
            if (used_[at->second]) {
                continue;
            }
            used_[at->second] = true;
            Line next = lines_[at->second];
            if (next.front() != line.back()) {
                std::ranges::reverse(next);
            }
            append(line, next);
            return true;
        }
        return false;
    }

    std::vector<Line> lines_;
    std::vector<bool> used_;
    std::unordered_multimap<std::uint32_t, std::size_t> ends_;
};

/// Takes open lines in where the gap to the end of this one is smaller than the gap within it.
Line closed(Line line, std::vector<Line>& open, std::span<const geo::Feet> places) {
    const auto gap = [&](std::uint32_t one, std::uint32_t other) {
        return feetBetween(places[one], places[other]);
    };
    while (!open.empty()) {
        const auto gapTo = [&](const Line& next) {
            return std::min(gap(line.back(), next.front()), gap(line.back(), next.back()));
        };
        const auto nearest = std::ranges::min_element(open, {}, gapTo);
        if (gapTo(*nearest) >= gap(line.back(), line.front())) {
            break;
        }
        Line next = std::move(*nearest);
        open.erase(nearest);
        if (gap(line.back(), next.back()) < gap(line.back(), next.front())) {
            std::ranges::reverse(next);
        }
        append(line, next);
    }
    line.push_back(line.front());
    return line;
}

}  // namespace

double feetBetween(const geo::Feet& one, const geo::Feet& other) {
    return std::hypot(one.x - other.x, one.y - other.y);
}

double lengthOf(std::span<const geo::Feet> line) {
    double feet = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        feet += feetBetween(line[i - 1], line[i]);
    }
    return feet;
}

std::vector<geo::Feet> placesAlong(std::span<const std::uint32_t> line,
                                   std::span<const geo::Feet> places) {
    std::vector<geo::Feet> along;
    along.reserve(line.size());
    std::ranges::transform(line, std::back_inserter(along),
                           [&](std::uint32_t point) { return places[point]; });
    return along;
}

std::vector<std::uint32_t> thinned(std::span<const std::uint32_t> line,
                                   std::span<const geo::Feet> places, double feet) {
    if (line.size() <= 2) {
        return {line.begin(), line.end()};
    }
    const auto along = placesAlong(line, places);
    std::vector<bool> stays(line.size(), false);
    stays.front() = stays.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> todo{{0, line.size() - 1}};
    while (!todo.empty()) {
        const auto [first, last] = todo.back();
        todo.pop_back();
        const auto [at, off] = farthest(along, first, last);
        if (off > feet) {
            stays[at] = true;
            todo.emplace_back(first, at);
            todo.emplace_back(at, last);
        }
    }
    std::vector<std::uint32_t> left;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (stays[i]) {
            left.push_back(line[i]);
        }
    }
    return left;
}

double areaOf(std::span<const geo::Feet> ring) {
    double twice = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const geo::Feet& next = ring[(i + 1) % ring.size()];
        twice += ring[i].x * next.y - next.x * ring[i].y;
    }
    return std::abs(twice) / 2;
}

std::vector<Line> joinedRings(std::vector<Line> lines, std::span<const geo::Feet> places) {
    std::erase_if(lines, [](const Line& line) { return line.size() < 2; });
    std::vector<Line> rings;
    std::vector<Line> open;
    for (Line& line : Joiner(std::move(lines)).joined()) {
        (isRing(line) ? rings : open).push_back(std::move(line));
    }
    while (!open.empty()) {
        Line line = std::move(open.back());
        open.pop_back();
        rings.push_back(closed(std::move(line), open, places));
    }
    return rings;
}

std::uint64_t placeOrder(const geo::Feet& fromCentre) {
    constexpr double Middle = 1U << 22U;
    constexpr std::uint64_t Most = (1U << 23U) - 1;
    constexpr int Bits = 23;
    const auto whole = [&](double feet) {
        return static_cast<std::uint64_t>(
            std::clamp(feet + Middle, 0.0, static_cast<double>(Most)));
    };
    const std::uint64_t right = whole(fromCentre.x);
    const std::uint64_t up = whole(fromCentre.y);
    std::uint64_t order = 0;
    for (int bit = 0; bit < Bits; ++bit) {
        order |= ((right >> bit) & 1U) << (2 * bit);
        order |= ((up >> bit) & 1U) << (2 * bit + 1);
    }
    return order;
}

}  // namespace tools::extract
