#include "runsearch/search/runlist.h"

#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "runsearch/search/runbuttons.h"

namespace runsearch {
namespace {

/// Each column as "caption width<-field".
std::vector<std::string> printed(const RunListLayout& layout) {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < layout.columns().size(); ++i) {
        const auto& column = layout.columns()[i];
        const auto field = i < layout.fields().size() ? layout.fields()[i] : "";
        lines.push_back(fmt::format("{} {}<-{}", column.caption, column.widthTwips, field));
    }
    return lines;
}

TEST(RunListLayout, ShiftsTheLastColumnsWithRouting) {
    const std::vector<std::string> expected{"Run ID 0<-Run",
                                            "Description 2440<-Description",
                                            "Start Time 1000<-StartTime",
                                            "End Time 1000<-EndTime",
                                            "Bell Time 1000<-BellTime",
                                            "School 0<-School",
                                            "Trip Type 0<-TripType",
                                            "Location 0<-LocCode",
                                            "Family 0<-RunFamily",
                                            "Route 0<-RouteID",
                                            "Driver 0<-EmpName",
                                            "Vehicle 0<-Vehicle",
                                            "Aid 0<-AidName",
                                            "Total Time 0<-total_time",
                                            "Total Miles 0<-total_miles",
                                            "Total Stops 0<-total_stops",
                                            "Total Students 1000<-Capacity",
                                            "Capacity 0<-TimeToUse",
                                            "Time To Use 0<-"};
    EXPECT_EQ(printed(RunListLayout(true)), expected);
}

TEST(RunListLayout, GivesTheLastWidthToTheStopsWithoutRouting) {
    const std::vector<std::string> expected{"Run ID 0<-Run",
                                            "Description 2440<-Description",
                                            "Start Time 1000<-StartTime",
                                            "End Time 1000<-EndTime",
                                            "Bell Time 1000<-BellTime",
                                            "School 0<-School",
                                            "Trip Type 0<-TripType",
                                            "Location 0<-LocCode",
                                            "Family 0<-RunFamily",
                                            "Total Time 0<-total_time",
                                            "Total Miles 0<-total_miles",
                                            "Total Stops 1000<-total_stops",
                                            "Total Students 0<-Total_Students",
                                            "Capacity 0<-Capacity",
                                            "Time To Use 0<-TimeToUse"};
    EXPECT_EQ(printed(RunListLayout(false)), expected);
}

TEST(RunListLayout, LeavesTheLastTwoFilledColumnsPlain) {
    EXPECT_EQ(RunListLayout(true).redCells().last, 16U);
    EXPECT_EQ(RunListLayout(false).redCells().last, 12U);
}

TEST(RunButtons, FollowPermissionsOnlyAfterRunsWereFound) {
    RunButtons buttons;
    EXPECT_EQ(buttons, (RunButtons{true, true, true, false, false, false, false, false}));
    const auto all = [](std::string_view) { return true; };
    const auto few = [](std::string_view task) { return task == "RTG250"; };
    buttons.afterRunsFound(all);
    EXPECT_EQ(buttons, (RunButtons{true, true, true, true, true, true, true, true}));
    buttons.afterRunsFound(few);
    EXPECT_EQ(buttons, (RunButtons{false, true, false, false, true, true, false, true}));
    buttons.afterRunsFound(all);
    EXPECT_EQ(buttons, (RunButtons{false, true, false, true, true, true, true, true}));
    buttons.afterReset();
    EXPECT_EQ(buttons, (RunButtons{false, true, false, false, false, false, false, false}));
}

}  // namespace
}  // namespace runsearch
