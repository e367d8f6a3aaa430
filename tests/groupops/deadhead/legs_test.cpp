#include <vector>

#include <gtest/gtest.h>

#include "groupops/deadhead/deadheadlegs.h"

namespace groupops {
namespace {

using base::Date;

constexpr std::int32_t Garage = 900;

RouteRun run(std::int32_t first, std::int32_t last, Date start, Date end) {
    return {.run = "R", .firstStop = first, .lastStop = last, .start = start, .end = end};
}

void expectLegs(const PerRun<RunLegs>& legs, const std::vector<RunLegs>& expected) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(legs[static_cast<int>(i) + 1] == expected[i]) << i + 1;
    }
}

}  // namespace

// Gaps of 30 minutes exactly, of 29 and a half (rounds up to 30), of 29 and a bit, and one that
// cannot be counted.
TEST(LegsOfRoute, GoBackToTheGarageWhereTheGapIsLongEnough) {
    PerRun<RouteRun> runs;
    runs[1] = run(1, 2, Date::timeOfDay(6, 0), Date::timeOfDay(6, 30));
    runs[2] = run(3, 4, Date::timeOfDay(7, 0), Date::timeOfDay(7, 30, 29));
    runs[3] = run(5, 6, Date::timeOfDay(7, 59, 59), Date::timeOfDay(8, 20, 40));
    runs[4] = run(7, 8, Date::timeOfDay(8, 50), Date::timeOfDay(9, 0));
    runs[5] = run(9, 10, {}, Date::timeOfDay(9, 0));
    runs[5].start.reset();
    expectLegs(legsOfRoute(runs, 5, Garage, 30), {{{Garage, 1}, {2, Garage}, true, false},
                                                  {{Garage, 3}, {4, Garage}, true, true},
                                                  {{Garage, 5}, {6, 7}, false, true},
                                                  {{6, 7}, {8, 9}, false, false},
                                                  {{8, 9}, {10, Garage}, true, false}});
    expectLegs(legsOfRoute(runs, 1, Garage, 30), {{{Garage, 1}, {2, Garage}, true, false}});
    // Overlapping runs have a gap below 0.
    runs[2].start = Date::timeOfDay(6, 29);
    EXPECT_EQ(legsOfRoute(runs, 2, Garage, 0)[1].after, (Leg{2, 3}));
}

TEST(DeadHeadOf, TakesMinutesToSecondsAndLeavesOutWhatIsUnknown) {
    const auto one = run(1, 2, Date::timeOfDay(0, 5), Date::timeOfDay(6, 30));
    const RunLegs legs{.before = {}, .after = {}, .showBothBeg = true, .showBothEnd = false};
    const auto known = deadHeadOf(one, legs, {10.005F, 3}, {0.5F, 1});
    // 600.3 seconds before: on the day before.
    EXPECT_EQ(known.beforeStart, Date{300 - 600});
    EXPECT_EQ(known.afterStart, Date::timeOfDay(6, 30, 30));
    EXPECT_TRUE(known.showBothBeg);
    const auto unknown = deadHeadOf(one, legs, {NoStop, NoStop}, {});
    EXPECT_FALSE(unknown.beforeStart || unknown.afterStart);
    // Not yet calculated is no failure marker: it counts as a figure.
    EXPECT_TRUE(deadHeadOf(one, legs, {-2, 0}, {0, 0}).beforeStart);
    EXPECT_THROW(static_cast<void>(deadHeadOf(one, legs, {1e12F, 1}, {0, 0})), base::RunTimeError);
}

}  // namespace groupops
