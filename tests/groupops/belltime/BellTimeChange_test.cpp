#include "groupops/belltime/BellTimeChange.h"

#include <QTableView>

#include "../groupsupport.h"
#include "platform/controls/grid.h"
#include "startup/base/session.h"
#include "support/formtest.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto ThirtyRuns =
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30) INSERT INTO "
    "RUN(RUN, SCHOOL, BELLTIME) SELECT 'X' || i, 'OAK', '1899-12-30 09:00:00' FROM n";

/// Groups as in the small district: ASH without a bell, OAK 8:00, OAK 3 pm, PINE 12:15 am.
class BellTimeForm : public support::FormTest<> {
protected:
    BellTimeForm() {
        byOthers("DELETE FROM STOP_TRIPTYPE");
        startup::RunSearchSchoolSQL = "SELECT RUN.* FROM RUN";
    }

    groupops::BellTimeChange& form() override {
        return loaded<groupops::BellTimeChange>(selection);
    }
    controls::Grid& grid() { return control<controls::Grid>("BellTimeGrid"); }
    void typeCell(int row, const char* text) {
        auto* model = grid().view().model();
        model->setData(model->index(row, 3), text);
    }
    std::vector<std::string> newBells() {
        std::vector<std::string> texts;
        texts.reserve(static_cast<std::size_t>(grid().rows()));
        for (int row = 0; row < grid().rows(); ++row) {
            texts.push_back(grid().cellText(row, 3));
        }
        return texts;
    }
    std::string row(int row) {
        return grid().cellText(row, 0) + "|" + grid().cellText(row, 1) + "|" +
               grid().cellText(row, 2) + "|" + grid().cellText(row, 3);
    }

    support::FakeSelection selection;
};

TEST_F(BellTimeForm, ShowsTheGroupsAndEnablesTheMethodByItsBox) {
    EXPECT_EQ(row(0), "ASH| |1| ");
    EXPECT_EQ(row(1), "OAK|08:00 AM|1| ");
    EXPECT_EQ(row(3), "PINE|12:15 AM|1| ");
    const auto states = [&] {
        std::string text;
        for (const auto* name : {"CalcMethod", "SetTimes", "SetTime", "AddMin", "MinChanged",
                                 "NumOfMinutes", "NumOfMinutes_Caption"}) {
            text += isEnabled(name) ? "1" : "0";
        }
        return text;
    };
    EXPECT_EQ(states(), "1111100");
    click("FixedMinutes");
    EXPECT_EQ(states(), "1111111");
    check("Change_Run_Time", false);
    EXPECT_EQ(states(), "0000000");
    check("Change_Run_Time");
    EXPECT_EQ(states(), "1111111");
    click("SameGap");
    EXPECT_EQ(states(), "1111100");
}

TEST_F(BellTimeForm, SetsAndShiftsTheSelectedRows) {
    grid().selectRows(std::vector{0, 2});
    type("SetTime", "7:50 am");
    click("SetTimes");
    EXPECT_THAT(newBells(), ElementsAre("07:50 AM", " ", "07:50 AM", " "));
    // From the current bell time, and not twice; a row without one stays.
    type("MinChanged", "-5");
    click("AddMin");
    click("AddMin");
    EXPECT_THAT(newBells(), ElementsAre("07:50 AM", " ", "02:55 PM", " "));
    grid().selectRows(std::vector{3});
    type("MinChanged", "-20");
    click("AddMin");
    EXPECT_EQ(newBells()[3], "11:55 PM");
    EXPECT_EQ(lastTitle(), "");

    type("MinChanged", "2.5");
    click("AddMin");
    EXPECT_EQ(lastTitle(), "Invalid Number of Minutes");
    type("SetTime", "soon");
    click("SetTimes");
    EXPECT_EQ(lastTitle(), "Invalid Time");
    type("SetTime", "9 am");
    grid().selectNone();
    click("SetTimes");
    EXPECT_EQ(lastTitle(), "No Rows Selected");
    EXPECT_EQ(newBells()[3], "11:55 PM");
}

TEST_F(BellTimeForm, ChangesTellsTheCountRebuildsAndSearchesAgain) {
    typeCell(1, "815a");
    typeCell(3, "12:30 am");
    EXPECT_EQ(newBells()[1], "08:15 AM");
    click("ChangeBell");
    EXPECT_EQ(text("StatMsg"), "Bell Times Changed. 2 Runs changed.");
    EXPECT_EQ(row(1), "OAK|08:15 AM|1| ");
    EXPECT_EQ(selection.searches, 1);
    EXPECT_EQ(lastTitle(), "");
    EXPECT_EQ(storedRun("ENDTIME"), "8:00:00 AM");
    const auto* deadHead = opened("frmCalcDeadHead");
    ASSERT_NE(deadHead, nullptr);
    EXPECT_FALSE(deadHead->findChild<QAbstractButton*>("ResetDeadHead")->isChecked());
    EXPECT_EQ(stored("SELECT NEEDDEADHEADBUILD FROM SYSTEM"), "False");
    EXPECT_EQ(stored("SELECT COUNT(*) FROM RUN WHERE DEADHEAD_BEFORE_TIME = -2"), "0");
    EXPECT_TRUE(isShown("ProgressBar1") && isShown("ProgressBar2"));
    form().Timer1_Timer();
    EXPECT_EQ(text("StatMsg"), "*** Changing Bell Times ***");
    EXPECT_FALSE(isShown("ProgressBar1") || isShown("ProgressBar2") || isShown("StopChange"));
}

TEST_F(BellTimeForm, LeavesTheDeadHeadAloneWhereRunTimesNeedNotHonorTheBell) {
    check("Change_Run_Time", false);
    typeCell(1, "8:15");
    click("ChangeBell");
    EXPECT_EQ(text("StatMsg"), "Bell Times Changed. 1 Runs changed.");
    EXPECT_EQ(opened("frmCalcDeadHead"), nullptr);
    EXPECT_THAT(text("OutlookWarning"), HasSubstr("dead-head times of the changed runs were not"));
}

TEST_F(BellTimeForm, RefusesBadEntriesBeforeAnythingIsWritten) {
    const auto before = rows("SELECT * FROM RUN");
    click("ChangeBell");
    EXPECT_EQ(lastTitle(), "No New Bell Time");
    typeCell(1, "8:15");
    typeCell(2, "25:00");
    EXPECT_TRUE(grid().isRed(2, 3));
    click("ChangeBell");
    EXPECT_EQ(lastTitle(), "Invalid New Bell Time");
    EXPECT_THAT(lastText(), HasSubstr("row 3, school OAK, current bell time 03:00 PM"));
    EXPECT_EQ(grid().view().currentIndex().row(), 2);
    typeCell(2, "");
    EXPECT_FALSE(grid().isRed(2, 3));
    click("FixedMinutes");
    type("NumOfMinutes", "many");
    click("ChangeBell");
    EXPECT_EQ(lastTitle(), "Invalid Number of Minutes");
    EXPECT_EQ(rows("SELECT * FROM RUN"), before);
    EXPECT_EQ(selection.searches, 0);
}

TEST_F(BellTimeForm, SaysWhatIsTooManyAndWhereAndTheProgramGoesOn) {
    byOthers(ThirtyRuns);
    typeCell(1, "9:00");
    const auto before = rows("SELECT * FROM RUN");
    answer(base::MsgAnswer::No);
    click("ChangeBell");
    EXPECT_EQ(lastTitle(), "Many Runs at One Bell Time");
    EXPECT_THAT(lastText(), HasSubstr("School OAK will have 31 runs at 09:00 AM"));
    EXPECT_EQ(rows("SELECT * FROM RUN"), before);
    texts();

    click("ChangeBell");
    EXPECT_THAT(texts(), ElementsAre(HasSubstr("31 runs"),
                                     AllOf(HasSubstr("School OAK, bell 09:00 AM: 31 runs"),
                                           HasSubstr("The change is done."))));
    EXPECT_EQ(opened("BellTimeChange"), nullptr);
    EXPECT_FALSE(form().isLoaded()) << "nor does it open again";
    EXPECT_THAT(lastText(), HasSubstr("No run was changed."));
}

// From the start of a run to school its end comes late: 101-AM takes ten minutes.
TEST_F(BellTimeForm, SaysBeforeWhatWillHappen) {
    byOthers("UPDATE RUN SET PICKUP = 1");
    byOthers(
        "INSERT INTO STOP_TRIPTYPE(INT_STOPID, TRIPTYPE, RUN, RUNSEQ, LOAD_TIME, TIME_TOSTOP) "
        "VALUES (3, 'AM', '101-AM', 1, 1, 0), (1, 'AM', '101-AM', 2, 0, 9), "
        "(1, 'AM', '102-AM', 1, 0, 0), (3, 'AM', '102-AM', 2, NULL, 1)");
    EXPECT_EQ(text("OutlookCount"), "No row has a new bell time yet.");
    typeCell(1, "8:15");
    EXPECT_EQ(text("OutlookCount"), "1 run in 1 of 4 rows will change.");
    const auto isBold = [](controls::Grid& of, int row, int column) {
        const auto* cells = of.view().model();
        return cells->data(cells->index(row, column), Qt::FontRole).value<QFont>().bold();
    };
    EXPECT_EQ(grid().cellText(1, 4), "none late");
    EXPECT_FALSE(isBold(grid(), 1, 4));
    EXPECT_FALSE(isShown("OutlookWarning"));

    control<QComboBox>("TimeToUse").setCurrentIndex(0);
    click("FixedMinutes");
    type("NumOfMinutes", "5");
    EXPECT_EQ(grid().cellText(1, 4), "1 of 1 late");
    EXPECT_TRUE(isBold(grid(), 1, 4));
    EXPECT_THAT(text("OutlookWarning"),
                HasSubstr("1 run will arrive after their bell. Calculated from Start Time, a run "
                          "to school starts 5 minutes before the bell; calculated from End Time "
                          "it would end then, and none would be late."));
    EXPECT_EQ(text("BesideChange"), "1 run will change, 1 arrive after their bell");
    auto& list = control<controls::Grid>("RunsBeforeAfter");
    EXPECT_EQ(list.cellText(0, 0) + list.cellText(0, 3) + list.cellText(0, 5) + list.cellText(0, 6),
              "101-AM07:45 AM08:20 AM5 min after");
    EXPECT_TRUE(!isBold(list, 0, 3) && isBold(list, 0, 5) && isBold(list, 0, 6));

    typeCell(3, "1 am");
    EXPECT_THAT(text("OutlookWarning"),
                HasSubstr("102-AM: A stop has no loading or driving minutes."));
    click("ChangeBell");
    EXPECT_EQ(text("StatMsg"), "Bell Times Changed. 1 Runs changed.");
    EXPECT_THAT(lastText(), HasSubstr("no loading or driving minutes: 102-AM."));
    EXPECT_EQ(storedRun("ENDTIME"), "8:20:00 AM") << "as was foretold";
    EXPECT_EQ(grid().cellText(1, 4), "changed");
}

}  // namespace
