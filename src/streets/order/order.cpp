#include "streets/order/order.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <utility>

#include "streets/order/bestorder.h"
#include "streets/order/moves.h"
#include "streets/order/stopcosts.h"
#include "streets/solve/timing.h"

namespace streets {

namespace {

constexpr double SecondsOverLimit = 1000;  // each counts as so many
constexpr double NoGain = 1.0 / 60;        // minutes

/// The stops of a run that have a time, each with the turn points before it.
class TimedRun {
public:
    explicit TimedRun(const RunToSolve& run) : run_(run), timed_(timedStops(run)) {}

    [[nodiscard]] std::size_t size() const { return timed_.size(); }
    [[nodiscard]] const RunStop& stop(std::size_t i) const { return run_.stops[timed_[i]]; }
    [[nodiscard]] std::size_t place(std::size_t i) const { return timed_[i]; }
    [[nodiscard]] bool pickup() const { return run_.pickup; }
    [[nodiscard]] bool hasTurnPoints() const { return timed_.size() < run_.stops.size(); }

    [[nodiscard]] RunToSolve withoutTurnPoints() const {
        RunToSolve run = run_;
        std::erase_if(run.stops, [](const RunStop& stop) { return stop.passed; });
        return run;
    }

    /// Places in the run, turn points before the stop that they led to; those at the end stay
    /// there.
    [[nodiscard]] std::vector<std::size_t> placesOf(std::span<const std::size_t> order) const {
        std::vector<std::size_t> places;
        for (const std::size_t i : order) {
            for (std::size_t at = i == 0 ? 0 : timed_[i - 1] + 1; at <= timed_[i]; ++at) {
                places.push_back(at);
            }
        }
        for (std::size_t at = timed_.back() + 1; at < run_.stops.size(); ++at) {
            places.push_back(at);
        }
        return places;
    }

    [[nodiscard]] RunToSolve inOrder(std::span<const std::size_t> places) const {
        RunToSolve run = run_;
        for (std::size_t i = 0; i < places.size(); ++i) {
            run.stops[i] = run_.stops[places[i]];
        }
        return run;
    }

private:
    const RunToSolve& run_;
    std::vector<std::size_t> timed_;
};

/// Minutes from where a student gets on to the school, or from the school to where one gets off.
double longestRide(const RunToSolve& run, const Solution& solution) {
    double longest = 0;
    for (std::size_t i = 0; i < run.stops.size(); ++i) {
        if (run.stops[i].students > 0 && !run.stops[i].passed) {
            const double until = solution.stops[i].cumulatedMinutes;
            longest = std::max(longest, run.pickup ? solution.totalMinutes - until : until);
        }
    }
    return longest;
}

class Suggester {
public:
    Suggester(const Network& network, const RunToSolve& run, const std::vector<bool>& fixed,
              const OrderLimits& limits)
        : network_(network), timed_(run), limits_(limits), fixed_(timed_.size()) {
        for (std::size_t i = 0; i < timed_.size(); ++i) {
            fixed_[i] = timed_.place(i) < fixed.size() && fixed[timed_.place(i)];
            riders_ += fixed_[i] ? 0 : timed_.stop(i).students;
        }
        if (!fixed_.empty()) {
            fixed_[timed_.pickup() ? fixed_.size() - 1 : 0] = true;
        }
    }

    OrderSuggestion suggest() {
        OrderSuggestion suggestion;
        const auto halts = haltsOf(network_, timed_.withoutTurnPoints(), suggestion.unserved);
        if (!suggestion.unserved.empty() || halts.size() < timed_.size()) {
            return unservedOf(std::move(suggestion.unserved));
        }
        std::vector<std::size_t> today(timed_.size());
        std::iota(today.begin(), today.end(), std::size_t{0});
        auto solved = solvedOrder(today);
        if (!solved) {
            return {.unserved = std::move(unserved_)};
        }
        suggestion.today = *std::move(solved);
        suggestion.suggested = suggestion.today;
        if (timed_.size() > 2) {
            takeBest(StopCosts(network_, timed_.withoutTurnPoints(), halts), suggestion);
        }
        suggestion.keepsLimits =
            excess(suggestion.suggested) == 0 && (limits_.seats == 0 || riders_ <= limits_.seats);
        return suggestion;
    }

private:
    /// Stops without a place count here on any network; places are told in the run as given.
    [[nodiscard]] OrderSuggestion unservedOf(std::vector<Unserved> found) const {
        for (Unserved& one : found) {
            one.stop = timed_.place(one.stop);
        }
        for (std::size_t i = 0; found.empty() && i < timed_.size(); ++i) {
            if (!timed_.stop(i).placed) {
                found.push_back({timed_.place(i), Unserved::Why::NoPlace});
            }
        }
        return {.unserved = std::move(found)};
    }

    std::optional<StopOrder> solvedOrder(std::span<const std::size_t> order) {
        StopOrder found{.stops = timed_.placesOf(order)};
        const RunToSolve run = timed_.inOrder(found.stops);
        const Solution solution = solve(network_, run);
        if (!solution.unserved.empty()) {
            unserved_ = solution.unserved;
            return std::nullopt;
        }
        found.minutes = solution.totalMinutes;
        found.miles = solution.totalMiles;
        found.longestRideMinutes = longestRide(run, solution);
        found.mostOnBus = riders_;
        return found;
    }

    [[nodiscard]] double excess(const StopOrder& order) const {
        return limits_.rideMinutes > 0
                   ? std::max(order.longestRideMinutes - limits_.rideMinutes, 0.0)
                   : 0;
    }

    [[nodiscard]] bool isBetter(const StopOrder& one, const StopOrder& other) const {
        const double less = excess(other) - excess(one);
        return less > NoGain || (less > -NoGain && one.minutes < other.minutes - NoGain);
    }

    void takeBest(const StopCosts& costs, OrderSuggestion& suggestion) {
        suggestion.isBest = isSmall() && !(timed_.hasTurnPoints() && network_.hasSides());
        const auto take = [&](const std::vector<std::size_t>& order) {
            const auto solved = order.empty() ? std::nullopt : solvedOrder(order);
            if (solved && isBetter(*solved, suggestion.suggested)) {
                suggestion.suggested = *solved;
            }
        };
        if (!isSmall()) {
            take(improved(costs));
            return;
        }
        const auto best = bestOrder(costs, fixed_);
        take(best);
        if (excess(suggestion.suggested) > 0) {
            // Behind a stop without students the longest ride begins at another one.
            suggestion.isBest = suggestion.isBest && everyStopHasRiders();
            for (const OrderEnds& ends : otherEnds()) {
                take(bestOrder(costs, fixed_, ends));
            }
        }
    }

    /// Of those that may change places.
    [[nodiscard]] bool everyStopHasRiders() const {
        for (std::size_t i = 0; i < fixed_.size(); ++i) {
            if (!fixed_[i] && timed_.stop(i).students == 0) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] bool isSmall() const {
        std::size_t neighbours = 0;
        for (const bool isFixed : fixed_) {
            neighbours = isFixed ? 0 : neighbours + 1;
            if (neighbours > MostStopsForBest) {
                return false;
            }
        }
        return true;
    }

    /// The longest ride is that of the first or last student: each in turn is tried there.
    [[nodiscard]] std::vector<OrderEnds> otherEnds() const {
        std::vector<OrderEnds> all;
        const std::size_t count = fixed_.size();
        bool begun = false;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t stop = timed_.pickup() ? i : count - 1 - i;
            if (fixed_[stop]) {
                if (begun) {
                    break;
                }
                continue;
            }
            begun = true;
            all.push_back(timed_.pickup() ? OrderEnds{.first = stop} : OrderEnds{.last = stop});
        }
        return all;
    }

    [[nodiscard]] std::vector<std::size_t> improved(const StopCosts& costs) const {
        const OrderCost cost = [&](std::span<const std::size_t> order) {
            return costs.costOf(order) + SecondsOverLimit * secondsOverLimit(costs, order);
        };
        std::vector<std::size_t> today(fixed_.size());
        std::iota(today.begin(), today.end(), std::size_t{0});
        auto one = improvedOrder(std::move(today), fixed_, cost);
        auto other = improvedOrder(insertedOrder(fixed_.size(), fixed_, cost), fixed_, cost);
        return cost(other) < cost(one) ? other : one;
    }

    [[nodiscard]] double secondsOverLimit(const StopCosts& costs,
                                          std::span<const std::size_t> order) const {
        if (limits_.rideMinutes <= 0) {
            return 0;
        }
        const auto boards = [&](std::size_t stop) { return timed_.stop(stop).students > 0; };
        const auto first = std::ranges::find_if(order, boards);
        const auto last = std::find_if(order.rbegin(), order.rend(), boards);
        const auto ride = timed_.pickup()
                              ? order.subspan(static_cast<std::size_t>(first - order.begin()))
                              : order.first(static_cast<std::size_t>(order.rend() - last));
        const double seconds = ride.empty() ? 0 : costs.costOf(ride);
        return std::max(seconds - limits_.rideMinutes * 60, 0.0);
    }

    const Network& network_;
    TimedRun timed_;
    OrderLimits limits_;
    std::vector<bool> fixed_;
    int riders_ = 0;
    std::vector<Unserved> unserved_;
};

}  // namespace

OrderSuggestion suggestOrder(const Network& network, const RunToSolve& run,
                             const std::vector<bool>& fixed, const OrderLimits& limits) {
    return Suggester(network, run, fixed, limits).suggest();
}

}  // namespace streets
