#include "streets/solve/halts.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace streets {

namespace {

Unserved::Why whyNoHalt(const Network& network, const RunStop& stop) {
    const bool isWrongSide =
        stop.side == DoorSide::Right && !network.haltsAt(stop.at, DoorSide::Either).empty();
    return isWrongSide ? Unserved::Why::WrongSide : Unserved::Why::NoStreet;
}

/// The quickest way to one halt of a stop.
struct Reached {
    double cost = std::numeric_limits<double>::infinity();
    std::size_t before = 0;  ///< the halt of the stop before
    Leg way = {};
};

/// The quickest ways to the halts of a stop from those of the stop before.
std::vector<Reached> reach(const Network& network, const std::vector<Reached>& before,
                           const std::vector<Halt>& from, const std::vector<Halt>& to) {
    std::vector<Reached> reached(to.size());
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (!std::isfinite(before[i].cost)) {
            continue;
        }
        auto ways = network.legs(from[i], to);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const double cost =
                ways[j] ? before[i].cost + ways[j]->seconds + ways[j]->reluctance : reached[j].cost;
            if (cost < reached[j].cost) {
                reached[j] = {cost, i, *std::move(ways[j])};
            }
        }
    }
    return reached;
}

ChosenHalts traced(std::span<const StopHalts> stops, std::vector<std::vector<Reached>> reached) {
    ChosenHalts chosen{.halts = std::vector<Halt>(stops.size()),
                       .ways = std::vector<Leg>(stops.size())};
    const auto& last = reached.back();
    auto best =
        static_cast<std::size_t>(std::ranges::min_element(last, {}, &Reached::cost) - last.begin());
    for (std::size_t i = stops.size(); i-- > 0;) {
        chosen.halts[i] = stops[i].halts[best];
        chosen.ways[i] = std::move(reached[i][best].way);
        best = reached[i][best].before;
    }
    return chosen;
}

}  // namespace

std::vector<StopHalts> haltsOf(const Network& network, const RunToSolve& run,
                               std::vector<Unserved>& unserved) {
    std::vector<StopHalts> all;
    for (std::size_t i = 0; i < run.stops.size(); ++i) {
        const RunStop& stop = run.stops[i];
        if (!stop.placed) {
            if (network.hasSides()) {
                unserved.push_back({i, Unserved::Why::NoPlace});
            }
            continue;
        }
        auto halts = network.haltsAt(stop.at, stop.passed ? DoorSide::Passing : stop.side);
        if (halts.empty()) {
            unserved.push_back({i, whyNoHalt(network, stop)});
        } else {
            all.push_back({i, std::move(halts)});
        }
    }
    return all;
}

ChosenHalts chooseHalts(const Network& network, std::span<const StopHalts> stops) {
    if (stops.empty()) {
        return {};
    }
    std::vector<std::vector<Reached>> reached{
        std::vector<Reached>(stops.front().halts.size(), Reached{.cost = 0})};
    for (std::size_t i = 1; i < stops.size(); ++i) {
        reached.push_back(reach(network, reached.back(), stops[i - 1].halts, stops[i].halts));
        const bool isReached = std::ranges::any_of(
            reached.back(), [](const Reached& one) { return std::isfinite(one.cost); });
        if (!isReached) {
            return {.notReached = i};
        }
    }
    return traced(stops, std::move(reached));
}

}  // namespace streets
