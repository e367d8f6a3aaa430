#include "tools/district/travel/timetable.h"

#include <gtest/gtest.h>

#include "data/schema/schema.h"
#include "tools/district/travel/directions.h"

namespace tools::district {

namespace {

using base::Date;

/// Three stops a mile apart and a turn point between the first two.
struct ThreeStops {
    Stop first{.id = 1, .stopId = "A", .type = data::stoptype::Regular, .at = {0, 0}};
    Stop turn{.id = 2, .stopId = "T", .type = data::stoptype::Directional, .at = {2640, 0}};
    Stop second{.id = 3, .stopId = "B", .type = data::stoptype::Regular, .at = {5280, 0}};
    Stop school{.id = 4, .stopId = "S", .type = data::stoptype::School, .at = {0, 0}};
    Run run;

    ThreeStops() {
        run.visits = {{.stop = &first, .students = 3, .loadMinutes = 0.5},
                      {.stop = &turn},
                      {.stop = &second, .loadMinutes = 1.01},
                      {.stop = &school, .loadMinutes = 2}};
        setLegs(run, false);
    }
};

}  // namespace

TEST(Timetable, NothingLeadsToAStopWithoutAPlace) {
    ThreeStops given;
    Stop lost{.id = 5, .stopId = "L", .type = data::stoptype::Regular, .placed = false};
    given.run.visits.insert(given.run.visits.begin() + 1, {.stop = &lost, .loadMinutes = 0.25});
    setLegs(given.run, false);
    EXPECT_EQ(given.run.visits[1].driveMinutes, 0);
    EXPECT_EQ(given.run.visits[3].driveMinutes, 3);
    EXPECT_EQ(given.run.timedStops(), 4);
    EXPECT_EQ(given.run.lastStop(), 4);
}

TEST(Directions, FollowTheGridAndTurnBack) {
    ThreeStops given;
    given.second.at = {5280, 2640};
    setTimes(given.run, Anchor::End, Date::timeOfDay(7, 0));
    std::vector<std::string> lines;
    for (const auto& line : directionsOf(given.run)) {
        lines.push_back(std::string(line.type) + ": " + line.text1 + " | " + line.text2);
    }
    const std::vector<std::string> expected = {
        "Start: Start at  | SKIP",
        "Stop: Stop A at : 3 board | 06:52 AM",
        "Direction: Follow 1st Street, go east | 0.5 miles",
        "Direction: Follow 1st Street, go east | 0.5 miles",
        "Direction: Turn left onto 5th Avenue, go north | 0.5 miles",
        "Stop: Stop B at  | 06:55 AM",
        "Direction: Turn left onto 3rd Street, go west | 1 miles",
        "Direction: Turn left onto 1st Avenue, go south | 0.5 miles",
        "Stop: Stop S at  | 07:00 AM",
        "Total: Total | 2 miles, 7.52 minutes"};
    EXPECT_EQ(lines, expected);
}

}  // namespace tools::district
