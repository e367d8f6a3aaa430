#include "groupops/groupchange/runchange.h"

#include "../groupsupport.h"
#include "startup/base/session.h"
#include "support/districtsession.h"

namespace {

using groupops::changeRuns;
using groupops::RunChange;
using support::FakeProgress;
using testing::ElementsAre;

class RunChangeTest : public support::DistrictSession {
protected:
    ado::Connection& routing = *startup::gcnRouting;
    FakeProgress progress;
};

TEST_F(RunChangeTest, SetsTheColumnsOnTheRunsAndNothingElse) {
    const auto before = rows("SELECT * FROM RUN");
    const std::vector<RunChange> changes{{"RunFamily", "SPORT"}, {"Capacity", ""}, {"OverFill", 7}};
    const std::vector<std::string> runs{"101-AM", "103-PM"};

    const auto outcome = changeRuns(routing, runs, changes, progress);

    EXPECT_EQ(outcome.done, 2);
    EXPECT_THAT(rows("SELECT RUN, RUNFAMILY, Capacity, OverFill FROM RUN ORDER BY RUN"),
                ElementsAre("101-AM|SPORT||7", "102-AM|SPORT|Low|Null", "103-PM|SPORT||7",
                            "201-PM|REG|High|Null"));
    EXPECT_THAT(progress.texts, ElementsAre("Changed information for run: 101-AM.",
                                            "Changed information for run: 103-PM."));
    EXPECT_THAT(progress.percents, ElementsAre(50, 100));
    byOthers("UPDATE RUN SET RUNFAMILY='REG', Capacity='High', OverFill=Null WHERE RUN='101-AM'");
    byOthers("UPDATE RUN SET RUNFAMILY=Null, Capacity=Null, OverFill=Null WHERE RUN='103-PM'");
    EXPECT_EQ(rows("SELECT * FROM RUN"), before);
}

}  // namespace
