#include "groupops/merge/runmerge.h"

#include "../groupsupport.h"
#include "mergedistrict.h"
#include "startup/base/session.h"
#include "support/districtsession.h"

namespace groupops {
namespace {

using support::FakeProgress;
using testing::ElementsAre;
using testing::HasSubstr;

class RunMergeTest : public support::DistrictSession {
protected:
    RunMergeTest() : DistrictSession(fillMerge) {}

    static std::vector<std::string> stopsOf(const std::string& run) {
        return rows("SELECT RUNSEQ, INT_STOPID, TRIPTYPE, RUN FROM STOP_TRIPTYPE WHERE RUN = '" +
                    run + "' ORDER BY RUNSEQ");
    }
    static std::string merged(const RunMerge& merge, FakeProgress& progress) {
        return whatWasLeft(mergeRuns(*startup::gcnRouting, merge, progress), mergeWording(merge));
    }
};

TEST_F(RunMergeTest, MovesAllStopsInTheirOrderAndLogsThem) {
    const RunMerge merge{" TO ", "from", "ANN"};
    FakeProgress progress;
    ASSERT_EQ(mergeObstacle(*startup::gcnRouting, merge), MergeObstacle::None);
    EXPECT_EQ(merged(merge, progress), "");
    EXPECT_THAT(stopsOf("TO"),
                ElementsAre("5|1|AM|TO", "7|5|AM|TO", "8|2|AM|TO", "9|4|AM|TO", "10|99|PM|TO"));
    EXPECT_THAT(stopsOf("FROM"), ElementsAre());
    EXPECT_THAT(rows("SELECT RUNID, Int_STOPID, StopID, TripType, LOGDATE, RUNLOG.User, "
                     "ACTIVITYCODE FROM RUNLOG"),
                ElementsAre("TO|2|B|AM|1/31/2026 8:05:09 AM|ANN|5",
                            "TO|Null|TURN|AM|1/31/2026 8:05:09 AM|ANN|5",
                            "TO|Null|NOT FOUND|PM|1/31/2026 8:05:09 AM|ANN|5"));
    EXPECT_EQ(rows("SELECT Description FROM RUNLOG")[2],
              "Stop Merged From run: TO with the sequence of: 9 to new run: from with a new "
              "sequence of: 10");
    EXPECT_THAT(progress.texts,
                ElementsAre("Merged stop: 1 of 3 total stops.", "Merged stop: 2 of 3 total stops.",
                            "Merged stop: 3 of 3 total stops."));
    EXPECT_EQ(progress.percents.back(), 100);
    EXPECT_EQ(mergeObstacle(*startup::gcnRouting, merge), MergeObstacle::NoStops);
    mergeRuns(*startup::gcnRouting, {"EMPTY", "OLD", "ANN"}, progress);
    EXPECT_THAT(stopsOf("EMPTY"), ElementsAre("1|3|AM|EMPTY"));
}

// The other program's changes come between the reading of the stops and their moving.
TEST_F(RunMergeTest, LeavesAloneWhatAnotherProgramMovedOrDeleted) {
    FakeProgress progress([&](int turn) {
        if (turn == 1) {
            byOthers("DELETE FROM STOP_TRIPTYPE WHERE INT_STOPID = 2");
            byOthers("UPDATE STOP_TRIPTYPE SET RUN = 'EMPTY' WHERE INT_STOPID = 4");
            byOthers("UPDATE STOP_TRIPTYPE SET RUNSEQ = 12 WHERE INT_STOPID = 99");
            byOthers("UPDATE STOP_TRIPTYPE SET RUNSEQ = 70 WHERE INT_STOPID = 5");
        }
        return false;
    });
    EXPECT_EQ(merged({"TO", "FROM", "ANN"}, progress),
              "1 of 3 stops merged to run: TO and saved.\n\nLeft alone, for another program has "
              "moved or deleted them meanwhile: B, TURN.");
    EXPECT_THAT(stopsOf("EMPTY"), ElementsAre("4|4|AM|EMPTY"));
    EXPECT_THAT(stopsOf("TO"), ElementsAre("5|1|AM|TO", "70|5|AM|TO", "71|99|PM|TO"));
    EXPECT_THAT(rows("SELECT RUNLOG.Description FROM RUNLOG"),
                ElementsAre(HasSubstr("sequence of: 12 to new")));
    EXPECT_EQ(progress.percents.back(), 100);
}

TEST_F(RunMergeTest, OffersAllActiveRunsButItself) {
    const auto runs = readOtherRuns(*startup::gcnRouting, "to ");
    ASSERT_EQ(runs.rowCount(), 2U);
    EXPECT_EQ(runs.text(0, 0) + runs.text(1, 0) + runs.text(1, 1), "EMPTYFROMOak morning");
}

}  // namespace
}  // namespace groupops
