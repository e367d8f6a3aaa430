#include "tools/district/make/plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tools::district {

namespace {

constexpr std::string_view Schools = "ID\tX\tY\tAMEARLY\tAMLATE\r\n7\t10\t20.5\t510\t1005\r\n";
constexpr std::string_view Stops =
    "ID\tX_COORD\tY_COORD\tEP_ID\tSTUDENT_COUNT\r\n2\t1\t2\t7\t16\r\n1\t0\t0\t7\t4\r\n";
constexpr std::string_view Header = "bus,from,to,action,start,end\n";

}  // namespace

TEST(Plan, CutsABusDayIntoRunsAtItsDeadHeads) {
    const std::string legs = std::string(Header) +
                             "1,9,1,\"deadhead\",04:00:00,04:10:00\n"
                             "1,1,1,\"pickup\",04:10:00.5,04:11:00\n"
                             "1,1,2,\"travel\",04:11:00,04:20:00\n"
                             "1,2,2,\"pickup\",04:20:00,04:21:00\n"
                             "1,2,7,\"travel\",04:21:00,05:00:00\n"
                             "1,7,7,\"dropoff\",05:00:00.25,05:02:00\n"
                             "1,7,7,\"wait\",05:02:00,05:10:00\n"
                             "1,7,1,\"deadhead\",05:10:00,05:12:00\n"
                             "1,1,1,\"pickup\",05:12:00,05:13:00\n"
                             "1,7,7,\"dropoff\",05:30:00,05:31:00\n"
                             "2,2,2,\"pickup\",05:00:00,05:13:00\n"
                             "2,7,7,\"dropoff\",06:00:00,06:01:00\n";
    const Plan plan = readPlan({Schools, Stops, legs});
    ASSERT_EQ(plan.runs.size(), 3U);
    EXPECT_EQ(plan.runs[0].pickups.size(), 2U);
    EXPECT_EQ(plan.runs[0].pickups[0].arrival, (4 * 60 + 10) * 60'000 + 500);
    EXPECT_EQ(plan.runs[0].school.arrival, 5 * 3'600'000 + 250);
    EXPECT_EQ(plan.runs[1].ordinal, 2);
    EXPECT_EQ(plan.runs[2].bus, 2);
    EXPECT_EQ(plan.runs[2].ordinal, 1);
    EXPECT_EQ(plan.school(7).latest, (10 * 60 + 5) * 60);
    EXPECT_EQ(plan.stop(1).students, 4);
}

}  // namespace tools::district
