#include "groupops/belltime/bellchange.h"

#include <algorithm>
#include <iterator>

#include "../groupsupport.h"
#include "startup/base/session.h"
#include "support/districtsession.h"

namespace {

using base::Date;
using groupops::BellChange;
using groupops::BellGroups;
using groupops::BellMethod;
using testing::ElementsAre;

/// The small district: groups ASH without bell (1: 103-PM), OAK 8:00 (2: 101-AM), OAK 3 pm
/// (3: 201-PM), PINE 12:15 am (4: 102-AM). 101-AM takes ten minutes, the others have no stops.
class BellChangeTest : public support::DistrictSession {
protected:
    BellChangeTest() {
        byOthers("DELETE FROM STOP_TRIPTYPE");
        byOthers(
            "INSERT INTO STOP_TRIPTYPE(INT_STOPID, TRIPTYPE, RUN, RUNSEQ, LOAD_TIME, TIME_TOSTOP, "
            "UPDATE_TIME) VALUES (3, 'AM', '101-AM', 1, 1, 0, 1), (1, 'AM', '101-AM', 2, 0, 9, 1)");
        byOthers("UPDATE RUN SET PICKUP = 1 WHERE RUN = '101-AM'");
        readBellGroups(*startup::gcnRouting, "SELECT RUN.* FROM RUN", groups);
    }

    groupops::Outcome changeTo(const std::vector<std::optional<Date>>& bells,
                               const BellMethod& method) {
        const BellChange change{groups, bells, method};
        return changeBellTimes(*startup::gcnRouting, change, {runProgress, [this](double percent) {
                                                                  groupPercents.push_back(percent);
                                                              }});
    }
    groupops::Outcome change(const std::vector<const char*>& bells, const BellMethod& method) {
        std::vector<std::optional<Date>> times;
        std::ranges::transform(bells, std::back_inserter(times), Date::parse);
        return changeTo(times, method);
    }
    static std::string times(const std::string& run) {
        return storedRun("BELLTIME, STARTTIME, ENDTIME", run);
    }

    BellGroups groups;
    std::vector<double> groupPercents;
    support::FakeProgress runProgress;
};

TEST_F(BellChangeTest, WritesBellTimesOfStopsEndsAndAuditOfTheGroupsThatChange) {
    const auto outcome = change({"", "8:20 am", "", ""}, {.fromEnd = true});
    EXPECT_EQ(outcome.done, 1);
    EXPECT_EQ(whatWasLeft(outcome, groupops::runChangeWording()), "");
    EXPECT_THAT(rows("SELECT RUN, BELLTIME, STARTTIME, ENDTIME, changeddt, ChangedBy FROM RUN "
                     "WHERE ChangedBy Is Not Null"),
                ElementsAre("101-AM|8:20:00 AM|7:55:00 AM|8:05:00 AM|1/31/2026 8:05:09 AM|BELL "
                            "TIME CHANGE"));
    EXPECT_THAT(rows("SELECT TIME_AT_STOP FROM STOP_TRIPTYPE ORDER BY RUNSEQ"),
                ElementsAre("7:55:00 AM", "8:05:00 AM"));
    EXPECT_THAT(groupPercents, ElementsAre(25, 50, 75, 100));
    EXPECT_THAT(runProgress.percents, ElementsAre(100));
}

TEST_F(BellChangeTest, FromTheStartTheAnchorBecomesTheStart) {
    change({"", "8:20 am"}, {.gap = BellMethod::Gap::FixedMinutes, .minutes = 30});
    EXPECT_EQ(times("101-AM"), "8:20:00 AM|7:50:00 AM|8:00:00 AM");
}

// What is stored are times of day, whichever day the arithmetic has come to.
TEST_F(BellChangeTest, OverMidnightTheDayStays) {
    const Date late = Date::timeOfDay(23, 55);
    changeTo({std::nullopt, late.plusSeconds(1200)}, {.fromEnd = true});
    EXPECT_EQ(times("101-AM"), "12:15:00 AM|11:50:00 PM|12:00:00 AM");
    changeTo({std::nullopt, late}, {.gap = BellMethod::Gap::FixedMinutes});
    EXPECT_EQ(times("101-AM"), "11:55:00 PM|11:55:00 PM|12:05:00 AM");
}

TEST_F(BellChangeTest, TheGapGoesOverToARunWhoseBellStays) {
    // 101-AM leaves a gap of -15; 201-PM stays at 3 pm and ends at 3 pm minus that gap. It has no
    // stops, so that it starts when it ends.
    change({"", "8:20 am", "3 pm"}, {.fromEnd = true});
    EXPECT_EQ(times("201-PM"), "3:00:00 PM|3:15:00 PM|3:15:00 PM");
}

TEST_F(BellChangeTest, ARunWithoutABellEndsAMinuteOffAndOneWithoutAnEndIsLeft) {
    auto outcome = change({"8:00 am"}, {});
    EXPECT_EQ(times("103-PM"), "8:00:00 AM|7:59:00 AM|7:59:00 AM");

    byOthers("UPDATE RUN SET ENDTIME = NULL, STARTTIME = NULL WHERE RUN = '101-AM'");
    byOthers("DELETE FROM RUN WHERE RUN = '201-PM'");
    outcome = change({"", "8:20 am", "3:30 pm", "1 am"}, {.fromEnd = true});
    EXPECT_EQ(outcome.done, 1);
    EXPECT_EQ(
        whatWasLeft(outcome, groupops::runChangeWording()),
        "1 of 3 runs changed and saved.\n\nLeft as they were, for they have no end time to keep "
        "the time span from: 101-AM.\n\nDeleted by another program meanwhile: 201-PM.");
    EXPECT_EQ(times("101-AM"), "8:00:00 AM|Null|Null");
    EXPECT_EQ(times("102-AM"), "1:00:00 AM|12:45:00 PM|12:45:00 PM");
}

}  // namespace
