#include "streets/order/order.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "../network/city.h"
#include "streets/network/graphnetwork.h"
#include "streets/network/gridnetwork.h"

namespace streets {

namespace {

RunToSolve randomRun(City& city, std::size_t stops, bool pickup) {
    RunToSolve run{.pickup = pickup, .time = base::Date::timeOfDay(7, 0)};
    for (std::size_t i = 0; i < stops; ++i) {
        const bool isGarage = pickup ? i == 0 : i + 1 == stops;
        const bool isSchool = pickup ? i + 1 == stops : i == 0;
        run.stops.push_back({.passed = i == 2,
                             .at = city.place(),
                             .students = isGarage || isSchool ? 0 : 4,
                             .loadMinutes = 0.25 * static_cast<double>(i)});
    }
    return run;
}

struct Figures {
    double minutes;
    double ride;
};

/// The best of all orders, found by trying each; the ride limit counts before the minutes.
Figures bestOfAll(const Network& network, const RunToSolve& run, double limit) {
    std::vector<std::size_t> free;
    for (std::size_t i = 1; i + 1 < run.stops.size(); ++i) {
        if (!run.stops[i].passed) {
            free.push_back(i);
        }
    }
    Figures best{1e9, 1e9};
    const auto isOver = [&](const Figures& one) { return std::max(one.ride - limit, 0.0); };
    do {
        RunToSolve trial = run;
        trial.stops.erase(trial.stops.begin() + 2);
        for (std::size_t i = 0; i < free.size(); ++i) {
            trial.stops[i + 1] = run.stops[free[i]];
        }
        const auto solved = solve(network, trial);
        const double first = solved.stops[1].cumulatedMinutes;
        const double last = solved.stops[trial.stops.size() - 2].cumulatedMinutes;
        const Figures found{solved.totalMinutes, run.pickup ? solved.totalMinutes - first : last};
        const double less = isOver(best) - isOver(found);
        if (less > 0.01 || (less > -0.01 && found.minutes < best.minutes)) {
            best = found;
        }
    } while (std::ranges::next_permutation(free).found);
    return best;
}

std::vector<bool> endsOf(const RunToSolve& run) {
    std::vector<bool> fixed(run.stops.size());
    fixed.front() = fixed.back() = true;
    return fixed;
}

}  // namespace

TEST(SuggestOrder, IsTheBestOfAllOrdersOfFewStops) {
    City city(12, 5);
    // The turn point costs nothing on a grid, so that orders can be tried without it.
    const auto network = gridNetwork({.blockFeet = 400, .feetPerSecond = 10});
    for (const bool pickup : {true, false}) {
        for (const double limit : {0.0, 17.0, 19.0}) {
            const auto run = randomRun(city, 8, pickup);
            const auto suggestion = suggestOrder(*network, run, endsOf(run), {20, limit});
            const auto best = bestOfAll(*network, run, limit > 0 ? limit : 1e9);
            EXPECT_TRUE(suggestion.isBest);
            EXPECT_NEAR(suggestion.suggested.minutes, best.minutes, 0.02);
            EXPECT_NEAR(suggestion.suggested.longestRideMinutes, best.ride, 0.02);
            EXPECT_EQ(suggestion.keepsLimits, limit == 0 || best.ride <= limit);
            EXPECT_EQ(suggestion.suggested.mostOnBus, 20);
            EXPECT_EQ(suggestion.suggested.stops.front(), 0U);
            EXPECT_EQ(suggestion.suggested.stops.back(), 7U);
        }
    }
}

TEST(SuggestOrder, ImprovesManyStopsAndKeepsSchoolAndTurnPoint) {
    City city(14, 3);
    const auto network = graphNetwork(city.map(), {});
    auto run = randomRun(city, 22, true);
    run.stops[2].passed = false;
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
