#include "groupops/belltime/bellchange.h"

#include <gmock/gmock.h>

#include "../groupsupport.h"
#include "support/fakes.h"
#include "support/smalldistrict.h"
#include "support/testdistrict.h"

namespace {

using base::Date;
using groupops::BellChange;
using groupops::BellGroups;
using groupops::BellMethod;
using support::FakeProgress;
using support::rowsOf;
using testing::ElementsAre;

/// The small district: groups ASH without bell (1: 103-PM), OAK 8:00 (2: 101-AM), OAK 3 pm
/// (3: 201-PM), PINE 12:15 am (4: 102-AM).
class BellChangeTest : public testing::Test {
protected:
    BellChangeTest() {
        fillSmall(district);
        sql("DELETE FROM STOP_TRIPTYPE");
        sql("INSERT INTO STOP_TRIPTYPE(INT_STOPID, TRIPTYPE, RUN, RUNSEQ, LOAD_TIME, TIME_TOSTOP, "
            "UPDATE_TIME) VALUES (3, 'AM', '101-AM', 1, 1, 0, 1), (1, 'AM', '101-AM', 2, 0, 9, 1)");
        sql("UPDATE RUN SET PICKUP = 1 WHERE RUN = '101-AM'");
        routing.Open(district.path(data::DatabaseFile::Routing));
        readBellGroups(routing, "SELECT RUN.* FROM RUN", groups);
    }
    void sql(const char* statement) { district.sql(data::DatabaseFile::Routing, statement); }

    groupops::GroupOutcome change(const std::vector<const char*>& bells, const BellMethod& method) {
        BellChange change{groups, {}, method};
        for (const auto* bell : bells) {
            change.newBells.push_back(Date::parse(bell));
        }
        return changeBellTimes(routing, change, {groupProgress, runProgress, {}});
    }
    std::vector<std::string> times(const std::string& run) {
        return rowsOf("SELECT BELLTIME, STARTTIME, ENDTIME FROM RUN WHERE RUN='" + run + "'",
                      routing);
    }

    support::TestDistrict district;
    support::FakeClock clock;
    ado::Connection routing;
    BellGroups groups;
    FakeProgress groupProgress;
    FakeProgress runProgress;
};

TEST_F(BellChangeTest, WritesBellTimesOfStopsEndsAndAuditOfTheGroupsThatChange) {
    const auto outcome = change({"", "8:20 am", "", ""}, {.fromEnd = true});
    EXPECT_EQ(outcome.changed, 1);
    EXPECT_EQ(groupops::whatWasLeft(outcome), "");
    EXPECT_THAT(rowsOf("SELECT RUN, BELLTIME, STARTTIME, ENDTIME, changeddt, ChangedBy FROM RUN "
                       "WHERE ChangedBy Is Not Null",
                       routing),
                ElementsAre("101-AM|8:20:00 AM|7:55:00 AM|8:05:00 AM|1/31/2026 8:05:09 AM|BELL "
                            "TIME CHANGE"));
    EXPECT_THAT(rowsOf("SELECT TIME_AT_STOP FROM STOP_TRIPTYPE ORDER BY RUNSEQ", routing),
                ElementsAre("7:55:00 AM", "8:05:00 AM"));
    EXPECT_THAT(groupProgress.percents, ElementsAre(25, 50, 75, 100));
    EXPECT_THAT(runProgress.percents, ElementsAre(100));
}

TEST_F(BellChangeTest, FromTheStartTheAnchorBecomesTheStart) {
    change({"", "8:20 am"}, {.gap = BellMethod::Gap::FixedMinutes, .minutes = 30});
    EXPECT_THAT(times("101-AM"), ElementsAre("8:20:00 AM|7:50:00 AM|8:00:00 AM"));
}

TEST_F(BellChangeTest, TheGapGoesOverToARunWhoseBellStays) {
    // 101-AM leaves a gap of -15; 201-PM stays at 3 pm and ends at 3 pm minus that gap. It has no
    // stops, so that it starts when it ends.
    change({"", "8:20 am", "3 pm"}, {.fromEnd = true});
    EXPECT_THAT(times("201-PM"), ElementsAre("3:00:00 PM|3:15:00 PM|3:15:00 PM"));
}

TEST_F(BellChangeTest, ARunWithoutABellEndsAMinuteOffAndOneWithoutAnEndIsLeft) {
    auto outcome = change({"8:00 am"}, {});
    EXPECT_THAT(times("103-PM"), ElementsAre("8:00:00 AM|7:59:00 AM|7:59:00 AM"));

    sql("UPDATE RUN SET ENDTIME = NULL, STARTTIME = NULL WHERE RUN = '101-AM'");
    sql("DELETE FROM RUN WHERE RUN = '201-PM'");
    outcome = change({"", "8:20 am", "3:30 pm", "1 am"}, {.fromEnd = true});
    EXPECT_EQ(outcome.changed, 1);
    EXPECT_EQ(groupops::whatWasLeft(outcome),
              "1 run changed and saved, 2 of 3 not changed.\n\n"
              "Deleted by another program meanwhile: 201-PM.\n\n"
              "Left as they were, for they have no end time to keep the time span from: 101-AM.");
    EXPECT_THAT(times("101-AM"), ElementsAre("8:00:00 AM|-|-"));
    EXPECT_THAT(times("102-AM"), ElementsAre("1:00:00 AM|12:45:00 PM|12:45:00 PM"));
}

}  // namespace
