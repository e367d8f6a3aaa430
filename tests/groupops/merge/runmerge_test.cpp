#include "groupops/merge/runmerge.h"

#include <gmock/gmock.h>

#include "groupops/fakeprogress.h"
#include "mergedistrict.h"
#include "platform/ado/recordset.h"
#include "support/fakes.h"

namespace groupops {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class RunMergeTest : public testing::Test {
protected:
    RunMergeTest() {
        fillMerge(district_);
        routing_.Open(district_.path(data::DatabaseFile::Routing));
    }

    /// The rows of a query, cells apart by "|".
    std::vector<std::string> rows(const std::string& sql) {
        ado::Recordset found;
        found.Open(sql, routing_);
        std::vector<std::string> texts;
        for (; !found.Eof(); found.MoveNext()) {
            std::string text;
            for (int i = 0; i < found.fieldCount(); ++i) {
                const auto value = found.Fields(i).Value();
                text += (i == 0 ? "" : "|") + (value.isNull() ? "-" : value.asText());
            }
            texts.push_back(text);
        }
        return texts;
    }
    std::vector<std::string> stopsOf(const std::string& run) {
        return rows("SELECT RUNSEQ, INT_STOPID, TRIPTYPE, RUN FROM STOP_TRIPTYPE WHERE RUN = '" +
                    run + "' ORDER BY RUNSEQ");
    }

    support::TestDistrict district_;
    support::FakeClock clock_;
    ado::Connection routing_;
};

}  // namespace

TEST_F(RunMergeTest, MovesAllStopsInTheirOrderAndLogsThem) {
    const RunMerge merge{" TO ", "from", "ANN"};
    FakeProgress progress;
    ASSERT_EQ(mergeObstacle(routing_, merge), MergeObstacle::None);
    const auto outcome = mergeRuns(routing_, merge, progress);
    EXPECT_EQ(whatStayed(merge, outcome), "");
    EXPECT_THAT(stopsOf("TO"),
                ElementsAre("5|1|AM|TO", "7|5|AM|TO", "8|2|AM|TO", "9|4|AM|TO", "10|99|PM|TO"));
    EXPECT_THAT(stopsOf("FROM"), ElementsAre());
    EXPECT_THAT(rows("SELECT RUNID, Int_STOPID, StopID, TripType, LOGDATE, RUNLOG.User, "
                     "ACTIVITYCODE FROM RUNLOG"),
                ElementsAre("TO|2|B|AM|1/31/2026 8:05:09 AM|ANN|5",
                            "TO|-|TURN|AM|1/31/2026 8:05:09 AM|ANN|5",
                            "TO|-|NOT FOUND|PM|1/31/2026 8:05:09 AM|ANN|5"));
    EXPECT_EQ(rows("SELECT Description FROM RUNLOG")[2],
              "Stop Merged From run: TO with the sequence of: 9 to new run: from with a new "
              "sequence of: 10");
    EXPECT_THAT(progress.texts,
                ElementsAre("Merged stop: 1 of 3 total stops.", "Merged stop: 2 of 3 total stops.",
                            "Merged stop: 3 of 3 total stops."));
    EXPECT_EQ(progress.percents.back(), 100);
    EXPECT_EQ(mergeObstacle(routing_, merge), MergeObstacle::NoStops);
    mergeRuns(routing_, {"EMPTY", "OLD", "ANN"}, progress);
    EXPECT_THAT(stopsOf("EMPTY"), ElementsAre("1|3|AM|EMPTY"));
}

TEST_F(RunMergeTest, RefusesWhatIsNoRunWithAReason) {
    struct Case {
        RunMerge merge;
        MergeObstacle obstacle;
        std::string message;
    };
    for (const auto& [merge, obstacle, message] :
         {Case{{"TO", "to ", ""}, MergeObstacle::SameRun, ""},
          Case{{"TO", " ", ""}, MergeObstacle::NoSource, "Please select the run"},
          Case{{"TO", "O'HARE", ""}, MergeObstacle::UnknownSource, "there is no run: O'HARE."},
          Case{{"GONE", "FROM", ""}, MergeObstacle::UnknownReceiving, "run: GONE does not exist"},
          Case{{"TO", "EMPTY", ""}, MergeObstacle::NoStops, "run: EMPTY has no stops"}}) {
        EXPECT_EQ(mergeObstacle(routing_, merge), obstacle) << merge.source;
        const auto told = messageOf(obstacle, merge);
        EXPECT_THAT(told ? told->text : "", HasSubstr(message));
        EXPECT_EQ(told.has_value(), !message.empty());
    }
}

// The other program's change comes between the reading of the stops and their moving.
TEST_F(RunMergeTest, LeavesAloneWhatAnotherProgramMoved) {
    class Meanwhile : public FakeProgress {
    public:
        explicit Meanwhile(const support::TestDistrict& district) : district_(district) {}
        bool yield() override {
            if (texts.size() == 1) {
                district_.sql(data::DatabaseFile::Routing,
                              "UPDATE STOP_TRIPTYPE SET RUN = 'EMPTY' WHERE INT_STOPID = 4");
                district_.sql(data::DatabaseFile::Routing,
                              "UPDATE STOP_TRIPTYPE SET RUNSEQ = 70 WHERE INT_STOPID = 5");
            }
            return texts.size() == 2;
        }

    private:
        const support::TestDistrict& district_;
    };
    Meanwhile progress(district_);
    const RunMerge merge{"TO", "FROM", "ANN"};
    const auto outcome = mergeRuns(routing_, merge, progress);
    EXPECT_THAT(stopsOf("EMPTY"), ElementsAre("4|4|AM|EMPTY"));
    EXPECT_THAT(stopsOf("FROM"), ElementsAre("9|99|PM|FROM"));
    EXPECT_EQ(whatStayed(merge, outcome),
              "1 of 3 stops of run: FROM are merged to run: TO and written.\n\nYou stopped the "
              "merge.  The other 1 stops are still on run: FROM.\n\n1 stops were left alone, for "
              "another program has moved them meanwhile.");
}

TEST_F(RunMergeTest, OffersAllActiveRunsButItself) {
    const auto runs = readOtherRuns(routing_, "to ");
    ASSERT_EQ(runs.rowCount(), 2U);
    EXPECT_EQ(runs.text(0, 0) + runs.text(1, 0) + runs.text(1, 1), "EMPTYFROMOak morning");
    EXPECT_EQ(runSummary(routing_, "FROM"), "Oak morning, OAK, AM, 3 stops");
    EXPECT_EQ(runSummary(routing_, "NONE"), "");
}

}  // namespace groupops
