#include "streets/order/order.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <numeric>

#include <gtest/gtest.h>

#include "../network/city.h"
#include "streets/network/graphnetwork.h"
#include "streets/network/gridnetwork.h"

namespace streets {

namespace {

RunToSolve randomRun(City& city, std::size_t stops, bool pickup) {
    RunToSolve run{.pickup = pickup, .time = base::Date::timeOfDay(7, 0)};
    for (std::size_t i = 0; i < stops; ++i) {
        const bool isSchool = pickup ? i + 1 == stops : i == 0;
        const auto students = static_cast<int>(city.number(8));
        run.stops.push_back({.at = city.place(),
                             .side = DoorSide::Right,
                             .students = isSchool ? 0 : students,
                             .loadMinutes = 0.25 * static_cast<double>(i)});
    }
    return run;
}

struct Figures {
    double minutes = 1e9;
    double ride = 1e9;
};

/// The orders of a run's stops, judged by a matrix of minutes alone.
class AllOrders {
public:
    AllOrders(const Network& network, const RunToSolve& run, const std::vector<bool>& fixed)
        : run_(run) {
        std::vector<Halt> halts;
        for (std::size_t i = 0; i < run.stops.size(); ++i) {
            halts.push_back(network.haltsAt(run.stops[i].at, DoorSide::Right).at(0));
            if (!fixed[i]) {
                free_.push_back(i);
            }
            parts_.push_back(std::count(
                fixed.begin(), std::next(fixed.begin(), static_cast<std::ptrdiff_t>(i)), true));
        }
        ways_ = network.matrix(halts, halts);
    }

    /// The quickest order among those of the shortest rides, or of rides up to the limit.
    [[nodiscard]] Figures best(double limit) const {
        Figures best;
        auto places = free_;
        std::vector<std::size_t> order(run_.stops.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        do {
            bool stays = true;
            for (std::size_t i = 0; i < free_.size(); ++i) {
                order[free_[i]] = places[i];
                stays = stays && parts_[free_[i]] == parts_[places[i]];
            }
            const Figures found = stays ? figuresOf(order) : Figures();
            const double more = std::max(found.ride, limit) - std::max(best.ride, limit);
            if (more < 0 || (more == 0 && found.minutes < best.minutes)) {
                best = found;
            }
        } while (std::ranges::next_permutation(places).found);
        return best;
    }

private:
    [[nodiscard]] Figures figuresOf(const std::vector<std::size_t>& order) const {
        std::vector<double> at{0};
        for (std::size_t i = 1; i < order.size(); ++i) {
            const Travel& travel = ways_[order[i - 1] * order.size() + order[i]];
            const double way = (travel.seconds + travel.reluctance) / 60;
            at.push_back(at.back() + run_.stops[order[i - 1]].loadMinutes + way);
        }
        double ride = 0;
        for (std::size_t i = 0; i < order.size(); ++i) {
            if (run_.stops[order[i]].students > 0) {
                ride = std::max(ride, run_.pickup ? at.back() - at[i] : at[i]);
            }
        }
        return {at.back(), ride};
    }

    const RunToSolve& run_;
    std::vector<std::size_t> free_;
    std::vector<std::ptrdiff_t> parts_;  ///< no stop passes a fixed one
    std::vector<Travel> ways_;
};

std::vector<bool> endsOf(const RunToSolve& run) {
    std::vector<bool> fixed(run.stops.size());
    fixed.front() = fixed.back() = true;
    return fixed;
}

}  // namespace

TEST(SuggestOrder, IsTheBestOfAllOrdersOfFewStops) {
    constexpr double Seconds = 0.1;  // minutes: what rounding comes to
    City city(12, 5);
    DrivingRules rules;
    rules.alleyReluctance = 0;
    const auto streets = graphNetwork(city.map(), rules);
    const auto grid = gridNetwork({.blockFeet = 400, .feetPerSecond = 10});
    int judged = 0;
    for (std::uint32_t trial = 0; trial < 220; ++trial) {
        const Network& network = trial % 3 == 0 ? *grid : *streets;
        const bool pickup = trial % 2 == 0;
        auto run = randomRun(city, 8, pickup);
        std::vector<bool> fixed(8);
        fixed[city.number(8)] = fixed[pickup ? 7 : 0] = true;
        const double limit = trial % 5 == 0 ? 0 : 12 + city.number(14);
        const auto suggestion = suggestOrder(network, run, fixed, {18, limit});
        const bool isSure = limit == 0 || std::ranges::all_of(run.stops, [&](const RunStop& stop) {
                                return stop.students > 0 ||
                                       fixed[static_cast<std::size_t>(&stop - run.stops.data())];
                            });
        EXPECT_TRUE(!suggestion.unserved.empty() || !isSure || suggestion.isBest);
        const bool hasOneHalt = std::ranges::all_of(run.stops, [&](const RunStop& stop) {
            return network.haltsAt(stop.at, stop.side).size() == 1;
        });
        if (!suggestion.isBest || !hasOneHalt) {
            continue;
        }
        ++judged;
        const AllOrders all(network, run, fixed);
        const double bound = limit > 0 ? limit : 1e9;
        const auto& found = suggestion.suggested;
        EXPECT_LE(found.longestRideMinutes - bound,
                  std::max(all.best(0).ride - bound, 0.0) + Seconds)
            << trial;
        EXPECT_LE(found.minutes, all.best(bound - Seconds).minutes + Seconds) << trial;
        EXPECT_GE(found.minutes, all.best(bound + Seconds).minutes - Seconds) << trial;
        int riders = 0;
        for (std::size_t i = 0; i < 8; ++i) {
            riders += fixed[i] ? 0 : run.stops[i].students;
            EXPECT_TRUE(!fixed[i] || found.stops[i] == i);
        }
        EXPECT_EQ(found.mostOnBus, riders);
        EXPECT_EQ(suggestion.keepsLimits, riders <= 18 && found.longestRideMinutes <= bound);
    }
    EXPECT_GT(judged, 80);
}

TEST(SuggestOrder, LeavesATurnPointBeforeTheStopThatItLedTo) {
    City city(12, 5);
    const auto network = gridNetwork({.blockFeet = 400, .feetPerSecond = 10});
    for (int trial = 0; trial < 20; ++trial) {
        auto run = randomRun(city, 8, true);
        run.stops[3].passed = true;
        const auto suggestion = suggestOrder(*network, run, endsOf(run), {});
        const auto& order = suggestion.suggested.stops;
        const auto turnPoint = std::ranges::find(order, 3U);
        ASSERT_LT(turnPoint - order.begin(), 7);
        EXPECT_EQ(*std::next(turnPoint), 4U);
        EXPECT_TRUE(suggestion.isBest);
    }
}

TEST(SuggestOrder, NamesAStopWithoutAPlaceOnAnyStreets) {
    City city(12, 5);
    for (const auto& network : {graphNetwork(city.map(), {}), gridNetwork({})}) {
        auto run = randomRun(city, 6, true);
        run.stops[2].passed = true;
        run.stops[3].placed = false;
        const auto unserved = suggestOrder(*network, run, endsOf(run), {}).unserved;
        EXPECT_TRUE(std::ranges::any_of(unserved, [](const Unserved& one) {
            return one.stop == 3 && one.why == Unserved::Why::NoPlace;
        }));
    }
}

TEST(SuggestOrder, ImprovesManyStopsAndKeepsSchoolAndTurnPoint) {
    City city(14, 3);
    const auto network = graphNetwork(city.map(), {});
    auto run = randomRun(city, 22, true);
    auto fixed = endsOf(run);
    fixed[10] = true;
    std::erase_if(run.stops, [&](const RunStop& stop) {
        RunToSolve alone{.stops = {run.stops[0], stop, run.stops[0]}};
        return !solve(*network, alone).unserved.empty();
    });
    fixed.resize(run.stops.size());
    fixed.back() = true;
    const auto few = suggestOrder(*network, run, fixed, {});
    EXPECT_TRUE(few.isBest);
    fixed[10] = fixed.back() = false;
    const auto many = suggestOrder(*network, run, fixed, {.seats = 10});
    EXPECT_FALSE(many.isBest);
    EXPECT_FALSE(many.keepsLimits);
    EXPECT_LE(many.suggested.minutes, few.suggested.minutes + 0.02);
    EXPECT_LT(few.suggested.minutes, few.today.minutes * 0.9);
    EXPECT_EQ(few.suggested.stops[10], 10U);
    EXPECT_EQ(many.suggested.stops.back(), run.stops.size() - 1);
    auto all = many.suggested.stops;
    std::ranges::sort(all);
    EXPECT_EQ(std::ranges::adjacent_find(all), all.end());
}

}  // namespace streets
