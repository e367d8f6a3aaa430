#include "tools/district/import/feed/shapeway.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tools::district {

namespace {

/// A place on one of the line's segments.
struct Place {
    double along = 0;
    double cost = 0;  ///< of this stop and all before it
    std::size_t before = 0;
};

/// The nearest place of a segment, not before `least` on the whole line.
Place nearest(geo::Feet from, geo::Feet to, double start, geo::Feet stop, double least) {
    const double length = distance(from, to);
    double at = 0;
    if (length > 0) {
        at = ((stop.x - from.x) * (to.x - from.x) + (stop.y - from.y) * (to.y - from.y)) / length;
        at = std::clamp(at, std::clamp(least - start, 0.0, length), length);
    }
    const double share = length > 0 ? at / length : 0;
    const double off =
        distance(stop, {from.x + (to.x - from.x) * share, from.y + (to.y - from.y) * share});
    return {start + at, off * off, 0};
}

}  // namespace

double distance(geo::Feet from, geo::Feet to) { return std::hypot(to.x - from.x, to.y - from.y); }

std::optional<std::vector<double>> placesAlong(const std::vector<geo::Feet>& line,
                                               const std::vector<geo::Feet>& stops) {
    if (line.size() < 2 || stops.empty()) {
        return std::nullopt;
    }
    std::vector<double> starts(line.size(), 0);
    for (std::size_t at = 1; at < line.size(); ++at) {
        starts[at] = starts[at - 1] + distance(line[at - 1], line[at]);
    }
    const std::size_t segments = line.size() - 1;
    std::vector<std::vector<Place>> table(stops.size(), std::vector<Place>(segments));
    for (std::size_t stop = 0; stop < stops.size(); ++stop) {
        std::size_t best = 0;  // of the stop before, among the segments up to this one
        for (std::size_t segment = 0; segment < segments; ++segment) {
            double least = 0;
            double cost = 0;
            if (stop > 0) {
                const auto& before = table[stop - 1];
                best = before[segment].cost < before[best].cost ? segment : best;
                least = before[best].along;
                cost = before[best].cost;
            }
            Place& place = table[stop][segment];
            place = nearest(line[segment], line[segment + 1], starts[segment], stops[stop], least);
            place.cost += cost;
            place.before = best;
        }
    }
    std::vector<double> places(stops.size());
    std::size_t at = static_cast<std::size_t>(
        std::ranges::min_element(table.back(), {}, &Place::cost) - table.back().begin());
    for (std::size_t stop = stops.size(); stop-- > 0;) {
        places[stop] = table[stop][at].along;
        at = table[stop][at].before;
    }
    return places;
}

}  // namespace tools::district
