#include "tools/district/make/plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/base/error.h"

namespace tools::district {

namespace {

constexpr std::string_view Schools = "ID\tX\tY\tAMEARLY\tAMLATE\r\n7\t10\t20.5\t510\t1005\r\n";
constexpr std::string_view Stops =
    "ID\tX_COORD\tY_COORD\tEP_ID\tSTUDENT_COUNT\r\n2\t1\t2\t7\t16\r\n1\t0\t0\t7\t4\r\n";
constexpr std::string_view Header = "bus,from,to,action,start,end\n";

std::string planOf(std::string_view legs) { return std::string(Header) + std::string(legs); }

std::string complaintAbout(std::string_view schools, std::string_view stops,
                           const std::string& legs) {
    try {
        static_cast<void>(readPlan({schools, stops, legs}));
    } catch (const base::RunTimeError& error) {
        return error.what();
    }
    return "";
}

}  // namespace

TEST(Plan, CutsABusDayIntoRunsAtItsDeadHeads) {
    const std::string legs = planOf(
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
        "2,7,7,\"dropoff\",06:00:00,06:01:00\n");
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

TEST(Plan, NamesTheLineThatIsWrong) {
    const std::string good = "1,1,1,pickup,05:12:00,05:13:00\n";
    const auto about = [](const std::string& legs) {
        return complaintAbout(Schools, Stops, planOf(legs));
    };
    EXPECT_EQ(about(good + "1,7,x,dropoff,05:30:00,05:31:00\n"),
              "Plan.csv, line 3: holds \"x\" where a number is expected.");
    EXPECT_EQ(about(good + "1,7,7\n"), "Plan.csv, line 3: has too few cells.");
    EXPECT_EQ(about("1,1,1,pickup,5 am,05:13:00\n"),
              "Plan.csv, line 2: holds \"5 am\" where a time of day is expected.");
    EXPECT_EQ(about("1,3,3,pickup,05:12:00,05:13:00\n"),
              "Plan.csv, line 2: picks up at the unknown stop 3.");
    EXPECT_EQ(about(good + "1,8,8,dropoff,05:12:00,05:13:00\n"),
              "Plan.csv, line 3: drops off at the unknown school 8.");
    EXPECT_EQ(about("1,7,7,dropoff,05:12:00,05:13:00\n"),
              "Plan.csv, line 2: drops off where nobody was picked up.");
    EXPECT_EQ(about("1,7,7,lunch,05:12:00,05:13:00\n"),
              "Plan.csv, line 2: holds the unknown action \"lunch\".");
    EXPECT_EQ(about(good), "Plan.csv: run 1 of bus 1 ends at no school.");
    EXPECT_EQ(complaintAbout("ID\n7\t1", Stops, planOf("")),
              "Schools.txt, line 2: has too few cells.");
}

TEST(Plan, TheEmbeddedInstanceIsTheWholePublishedOne) {
    const Plan plan = readPlan(embeddedPlan());
    EXPECT_EQ(plan.schools.size(), 6U);
    EXPECT_EQ(plan.stops.size(), 250U);
    EXPECT_EQ(plan.runs.size(), 59U);
    EXPECT_EQ(plan.legs.back().bus, 31);
    int students = 0;
    for (const PlanStop& stop : plan.stops) {
        students += stop.students;
    }
    EXPECT_EQ(students, 3409);
    EXPECT_THAT(std::string(embeddedLicence()), testing::HasSubstr("MIT License"));
}

}  // namespace tools::district
