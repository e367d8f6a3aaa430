#include "groupops/groupchange/runchange.h"

#include <gmock/gmock.h>

#include "../groupsupport.h"
#include "support/smalldistrict.h"
#include "support/testdistrict.h"

namespace {

using groupops::changeRuns;
using groupops::RunChange;
using support::FakeProgress;
using support::rowsOf;
using testing::ElementsAre;

class RunChangeTest : public testing::Test {
protected:
    RunChangeTest() {
        fillSmall(district);
        routing.Open(district.path(data::DatabaseFile::Routing));
    }
    std::vector<std::string> wholeRuns() { return rowsOf("SELECT * FROM RUN", routing); }

    support::TestDistrict district;
    ado::Connection routing;
    FakeProgress progress;
};

TEST_F(RunChangeTest, SetsTheColumnsOnTheRunsAndNothingElse) {
    const auto before = wholeRuns();
    const std::vector<RunChange> changes{{"RunFamily", "SPORT"}, {"Capacity", ""}, {"OverFill", 7}};
    const std::vector<std::string> runs{"101-AM", "103-PM"};

    const auto outcome = changeRuns(routing, runs, changes, progress);

    EXPECT_EQ(outcome.changed, 2);
    EXPECT_THAT(rowsOf("SELECT RUN, RUNFAMILY, Capacity, OverFill FROM RUN ORDER BY RUN", routing),
                ElementsAre("101-AM|SPORT||7", "102-AM|SPORT|Low|-", "103-PM|SPORT||7",
                            "201-PM|REG|High|-"));
    EXPECT_THAT(progress.texts, ElementsAre("Changed information for run: 101-AM.",
                                            "Changed information for run: 103-PM."));
    EXPECT_THAT(progress.percents, ElementsAre(50, 100));
    routing.Execute(
        "UPDATE RUN SET RUNFAMILY='REG', Capacity='High', OverFill=Null "
        "WHERE RUN='101-AM'");
    routing.Execute(
        "UPDATE RUN SET RUNFAMILY=Null, Capacity=Null, OverFill=Null "
        "WHERE RUN='103-PM'");
    EXPECT_EQ(wholeRuns(), before);
}

TEST_F(RunChangeTest, LeavesOutDeletedRunsAndStopsBetweenTwo) {
    const std::vector<RunChange> changes{{"LocCode", "SOUTH"}};
    auto outcome = changeRuns(routing, std::vector<std::string>{"101-AM", "GONE", "201-PM"},
                              changes, progress);
    EXPECT_EQ(outcome.changed, 2);
    EXPECT_EQ(groupops::whatWasLeft(outcome),
              "2 runs changed and saved, 1 of 3 not changed.\n\n"
              "Deleted by another program meanwhile: GONE.");

    FakeProgress stopping(2);
    outcome = changeRuns(routing, std::vector<std::string>{"102-AM", "103-PM"}, changes, stopping);
    EXPECT_EQ(groupops::whatWasLeft(outcome),
              "1 run changed and saved, 1 of 2 not changed.\n\n"
              "You stopped the change.  The runs not yet reached are as they were before.");
    EXPECT_THAT(rowsOf("SELECT RUN FROM RUN WHERE LocCode='SOUTH' ORDER BY RUN", routing),
                ElementsAre("101-AM", "102-AM", "201-PM"));
}

}  // namespace
