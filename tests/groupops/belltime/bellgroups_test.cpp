#include "groupops/belltime/bellgroups.h"

#include <string>

#include <gtest/gtest.h>

#include "groupops/belltime/bellanchor.h"
#include "support/errors.h"

namespace {

using base::Date;
using base::Value;
using groupops::bellAnchor;
using groupops::BellGroups;
using groupops::BellMethod;

Value at(int hour, int minute) { return Date::timeOfDay(hour, minute); }

TEST(BellGroups, HoldThirtyRunsAGroupAndThreeHundredGroups) {
    BellGroups full;
    for (int run = 1; run <= 30; ++run) {
        full.add("OAK", at(8, 0), "R" + std::to_string(run));
    }
    EXPECT_EQ(support::errorOf([&] { full.add("OAK", at(8, 0), "R31"); }), 9);
    for (int group = 2; group <= 300; ++group) {
        full.add("S" + std::to_string(group), at(8, 0), "R");
    }
    EXPECT_EQ(full.count(), 300);
    EXPECT_EQ(support::errorOf([&] { full.add("ONE TOO MANY", at(8, 0), "R"); }), 9);
    EXPECT_EQ(full.count(), 300);
}

struct AnchorCase {
    const char* what;
    BellMethod method;
    bool pickup;
    const char* oldBell;  ///< "" is Null
    const char* oldEnd;
    const char* newBell;
    int gapBefore;
    const char* anchor;  ///< "" is nothing
    int gap;
};

TEST(BellAnchor, FollowsFromTheMethodAndTheRun) {
    constexpr BellMethod Same{};
    constexpr BellMethod Ten{BellMethod::Gap::FixedMinutes, 10};
    const AnchorCase cases[] = {
        {"to school, 15 before the bell", Same, true, "8:00 am", "7:45 am", "8:20 am", 0,
         "8:05:00 AM", -15},
        {"home, ends 40 after the bell", Same, false, "3:00 pm", "3:40 pm", "2:45 pm", 0,
         "3:25:00 PM", -40},
        {"half minutes go to the even minute", Same, true, "8:00 am", "7:44:30 am", "9:00 am", 0,
         "8:44:00 AM", -16},
        {"the same bell takes the gap before", Same, true, "8:00 am", "7:45 am", "8:00 am", -7,
         "7:53:00 AM", -7},
        {"the same bell as the first run", Same, false, "8:00 am", "7:45 am", "8:00 am", 0,
         "8:00:00 AM", 0},
        {"a run without a bell, to school", Same, true, "", "7:45 am", "8:00 am", 20, "8:01:00 AM",
         1},
        {"a run without a bell, home", Same, false, "", "", "8:00 am", 20, "7:59:00 AM", 1},
        {"no end to keep a gap from", Same, true, "8:00 am", "", "8:15 am", 0, "", 0},
        {"fixed minutes to school", Ten, true, "8:30 am", "7:45 am", "8:00 am", 3, "7:50:00 AM", 3},
        {"fixed minutes home, no end", Ten, false, "3:00 pm", "", "8:00 am", 3, "8:10:00 AM", 3},
    };
    for (const auto& one : cases) {
        const auto anchor =
            bellAnchor(one.method, {one.pickup, Date::parse(one.oldBell), Date::parse(one.oldEnd)},
                       *Date::parse(one.newBell), one.gapBefore);
        EXPECT_EQ(anchor ? anchor->time.text() : "", one.anchor) << one.what;
        EXPECT_EQ(anchor ? anchor->gapMinutes : 0, one.gap) << one.what;
    }
}

}  // namespace
