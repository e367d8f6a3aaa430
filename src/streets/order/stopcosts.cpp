#include "streets/order/stopcosts.h"

#include <algorithm>
#include <limits>

namespace streets {

StopCosts::StopCosts(const Network& network, const RunToSolve& run,
                     std::span<const StopHalts> stops)
    : firstHalt_{0} {
    std::vector<Halt> halts;
    std::vector<double> seconds;
    for (const StopHalts& stop : stops) {
        halts.insert(halts.end(), stop.halts.begin(), stop.halts.end());
        seconds.resize(halts.size(), run.stops[stop.stop].loadMinutes * 60);
        firstHalt_.push_back(halts.size());
    }
    costs_.reserve(halts.size() * halts.size());
    for (const Travel& travel : network.matrix(halts, halts)) {
        costs_.push_back(travel.seconds + travel.reluctance +
                         seconds[costs_.size() / halts.size()]);
    }
}

double StopCosts::costOf(std::span<const std::size_t> order) const {
    std::vector<double> before(endHalt(order[0]) - firstHalt(order[0]));
    std::vector<double> now;
    for (std::size_t i = 1; i < order.size(); ++i) {
        now.assign(endHalt(order[i]) - firstHalt(order[i]),
                   std::numeric_limits<double>::infinity());
        for (std::size_t to = 0; to < now.size(); ++to) {
            for (std::size_t from = 0; from < before.size(); ++from) {
                now[to] = std::min(now[to], before[from] + cost(firstHalt(order[i - 1]) + from,
                                                                firstHalt(order[i]) + to));
            }
        }
        before.swap(now);
    }
    return *std::ranges::min_element(before);
}

}  // namespace streets
