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
    double cost = 0;
    std::size_t before = 0;  ///< the halt of the stop before
};

double costOf(const Travel& travel) { return travel.seconds + travel.reluctance; }

/// The quickest ways to the halts of a stop from those of the stop before.
std::vector<Reached> reach(const Network& network, const std::vector<Reached>& before,
                           const std::vector<Halt>& from, const std::vector<Halt>& to) {
    const auto travels = network.matrix(from, to);
    std::vector<Reached> reached(to.size(), {std::numeric_limits<double>::infinity(), 0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        for (std::size_t j = 0; j < to.size(); ++j) {
            const double cost = before[i].cost + costOf(travels[i * to.size() + j]);
            if (cost < reached[j].cost) {
                reached[j] = {cost, i};
            }
        }
    }
    return reached;
}

bool isChoice(std::span<const StopHalts> stops) {
    return std::ranges::any_of(stops, [](const auto& stop) { return stop.halts.size() > 1; });
}

std::vector<Halt> traced(std::span<const StopHalts> stops,
                         const std::vector<std::vector<Reached>>& reached) {
    std::vector<Halt> halts(stops.size());
    const auto& last = reached.back();
    auto best =
        static_cast<std::size_t>(std::ranges::min_element(last, {}, &Reached::cost) - last.begin());
    for (std::size_t i = stops.size(); i-- > 0;) {
        halts[i] = stops[i].halts[best];
        best = reached[i][best].before;
    }
    return halts;
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
    std::vector<std::vector<Reached>> reached{std::vector<Reached>(stops.front().halts.size())};
    for (std::size_t i = 1; i < stops.size(); ++i) {
        // A choice among ways needs their costs; a single one is found with its leg.
        const bool isOnly = !isChoice(stops.subspan(i - 1, 2));
        reached.push_back(isOnly
                              ? std::vector<Reached>{{reached.back().front().cost, 0}}
                              : reach(network, reached.back(), stops[i - 1].halts, stops[i].halts));
        const bool isReached = std::ranges::any_of(
            reached.back(), [](const Reached& one) { return std::isfinite(one.cost); });
        if (!isReached) {
            return {.notReached = i};
        }
    }
    return {.halts = traced(stops, reached)};
}

}  // namespace streets
