#include "groupops/belltime/BellTimeChange.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QTimer>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "../groupsupport.h"
#include "platform/controls/grid.h"
#include "platform/controls/layoutmemory.h"
#include "platform/forms/formregistry.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Groups as in the small district: ASH without a bell, OAK 8:00, OAK 3 pm, PINE 12:15 am.
class BellTimeForm : public testing::Test {
protected:
    BellTimeForm() {
        forms::Application::instance().startAfresh();
        fillSmall(district);
        sql("DELETE FROM STOP_TRIPTYPE");
        session.start(district.configFolder());
        startup::RunSearchSchoolSQL = "SELECT RUN.* FROM RUN";
    }
    ~BellTimeForm() override {
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
        controls::LayoutMemory::instance().forget();
    }

    groupops::BellTimeChange& form() {
        return forms::FormRegistry::instance().load<groupops::BellTimeChange>(selection);
    }
    template <class Control>
    Control& control(const char* name) {
        return *form().findChild<Control*>(name);
    }
    controls::Grid& grid() { return control<controls::Grid>("BellTimeGrid"); }
    void check(const char* name, bool on = true) { control<QAbstractButton>(name).setChecked(on); }
    void click(const char* name) { control<QAbstractButton>(name).click(); }
    void type(const char* name, const char* text) { control<QLineEdit>(name).setText(text); }
    void typeCell(int row, const char* text) {
        auto* model = grid().view().model();
        model->setData(model->index(row, 3), text);
    }
    bool isEnabled(const char* name) { return control<QWidget>(name).isEnabled(); }
    std::string status() { return control<QLabel>("StatMsg").text().toStdString(); }
    std::vector<std::string> newBells() {
        std::vector<std::string> texts;
        for (int row = 0; row < grid().rows(); ++row) {
            texts.push_back(grid().cellText(row, 3));
        }
        return texts;
    }
    std::string row(int row) {
        return grid().cellText(row, 0) + "|" + grid().cellText(row, 1) + "|" +
               grid().cellText(row, 2) + "|" + grid().cellText(row, 3);
    }
    std::vector<std::string> wholeRuns() {
        return support::rowsOf("SELECT * FROM RUN", *startup::gcnRouting);
    }
    void sql(const std::string& statement) { district.sql(data::DatabaseFile::Routing, statement); }
    std::string lastBox() {
        return session.boxes.shown.empty() ? "no box" : session.boxes.shown.back().title;
    }

    support::TestDistrict district;
    support::TestSession session;
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
    EXPECT_EQ(lastBox(), "no box");

    type("MinChanged", "2.5");
    click("AddMin");
    EXPECT_EQ(lastBox(), "Invalid Number of Minutes");
    type("SetTime", "soon");
    click("SetTimes");
    EXPECT_EQ(lastBox(), "Invalid Time");
    type("SetTime", "9 am");
    grid().selectNone();
    click("SetTimes");
    EXPECT_EQ(lastBox(), "No Rows Selected");
    EXPECT_EQ(newBells()[3], "11:55 PM");
}

TEST_F(BellTimeForm, ChangesTellsTheCountRebuildsAndSearchesAgain) {
    typeCell(1, "815a");
    typeCell(3, "12:30 am");
    EXPECT_EQ(newBells()[1], "08:15 AM");
    click("ChangeBell");
    EXPECT_EQ(status(), "Bell Times Changed. 2 Runs changed.");
    EXPECT_EQ(row(1), "OAK|08:15 AM|1| ");
    EXPECT_EQ(selection.searches, 1);
    EXPECT_EQ(lastBox(), "no box");
    EXPECT_THAT(
        support::rowsOf("SELECT ENDTIME FROM RUN WHERE RUN = '101-AM'", *startup::gcnRouting),
        ElementsAre("8:00:00 AM"));
    const auto* deadHead = forms::FormRegistry::instance().find("frmCalcDeadHead");
    ASSERT_NE(deadHead, nullptr);
    EXPECT_FALSE(deadHead->findChild<QAbstractButton*>("ResetDeadHead")->isChecked());
    EXPECT_THAT(support::rowsOf("SELECT NEEDDEADHEADBUILD FROM SYSTEM", *startup::gcnRouting),
                ElementsAre("False"));
    EXPECT_FALSE(control<QWidget>("ProgressBar2").isHidden());
    form().Timer1_Timer();
    EXPECT_EQ(status(), "*** Changing Bell Times ***");
    for (const auto* name : {"StatMsg", "ProgressBar1", "ProgressBar2", "StopChange"}) {
        EXPECT_TRUE(control<QWidget>(name).isHidden()) << name;
    }
}

TEST_F(BellTimeForm, LeavesTheDeadHeadAloneWhereRunTimesNeedNotHonorTheBell) {
    check("Change_Run_Time", false);
    typeCell(1, "8:15");
    click("ChangeBell");
    EXPECT_EQ(status(), "Bell Times Changed. 1 Runs changed.");
    EXPECT_EQ(forms::FormRegistry::instance().find("frmCalcDeadHead"), nullptr);
}

TEST_F(BellTimeForm, RefusesBadEntriesBeforeAnythingIsWritten) {
    const auto before = wholeRuns();
    click("ChangeBell");
    EXPECT_EQ(lastBox(), "No New Bell Time");
    typeCell(1, "8:15");
    typeCell(2, "25:00");
    EXPECT_TRUE(grid().isRed(2, 3));
    click("ChangeBell");
    EXPECT_EQ(lastBox(), "Invalid New Bell Time");
    EXPECT_THAT(session.boxes.shown.back().text,
                HasSubstr("row 3, school OAK, current bell time 03:00 PM"));
    EXPECT_EQ(grid().view().currentIndex().row(), 2);
    typeCell(2, "");
    EXPECT_FALSE(grid().isRed(2, 3));
    click("FixedMinutes");
    type("NumOfMinutes", "many");
    click("ChangeBell");
    EXPECT_EQ(lastBox(), "Invalid Number of Minutes");
    EXPECT_EQ(wholeRuns(), before);
    EXPECT_EQ(selection.searches, 0);
}

TEST_F(BellTimeForm, ThirtyOneRunsOfAGroupAreASubscriptError) {
    sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 31) INSERT INTO "
        "RUN(RUN, SCHOOL, BELLTIME) SELECT 'X' || i, 'ELM', '1899-12-30 09:00:00' FROM n");
    EXPECT_THROW(form(), base::EndProgram);
    ASSERT_EQ(session.boxes.shown.size(), 1U);
    EXPECT_THAT(session.boxes.shown[0].text,
                HasSubstr("Build_Time_List of Module: BellTimeChange."));
}

TEST_F(BellTimeForm, AsksBeforeItMakesAGroupThatItCannotHold) {
    sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30) INSERT INTO "
        "RUN(RUN, SCHOOL, BELLTIME) SELECT 'X' || i, 'OAK', '1899-12-30 09:00:00' FROM n");
    typeCell(1, "9:00");
    const auto before = wholeRuns();
    session.boxes.answers = {base::MsgAnswer::No};
    click("ChangeBell");
    EXPECT_EQ(lastBox(), "Many Runs at One Bell Time");
    EXPECT_THAT(session.boxes.shown.back().text,
                HasSubstr("School OAK will have 31 runs at 09:00 AM"));
    EXPECT_EQ(wholeRuns(), before);
    typeCell(1, "9:01");
    click("ChangeBell");
    EXPECT_EQ(status(), "Bell Times Changed. 1 Runs changed.");
}

TEST_F(BellTimeForm, WhileItRunsItStaysOpenTakesNoSecondStartAndStops) {
    sql("DELETE FROM RUN");
    sql("WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 5999) INSERT "
        "INTO "
        "RUN(RUN, SCHOOL, BELLTIME, ENDTIME) SELECT 'X' || i, 'S' || (i / 30), "
        "'1899-12-30 09:00:00', '1899-12-30 08:50:00' FROM n");
    grid().selectAllRows();
    type("SetTime", "9:10 am");
    click("SetTimes");
    bool closed = true;
    bool startable = true;
    QTimer::singleShot(0, [&] {
        closed = form().closeForm();
        startable = isEnabled("ChangeBell");
        click("StopChange");
    });
    click("ChangeBell");
    EXPECT_FALSE(closed);
    EXPECT_FALSE(startable);
    ASSERT_EQ(lastBox(), "Bell Time Change");
    const auto changed = support::rowsOf("SELECT RUN FROM RUN WHERE ChangedBy='BELL TIME CHANGE'",
                                         *startup::gcnRouting);
    EXPECT_LT(changed.size(), 6000U);
    EXPECT_EQ(status(), fmt::format("Bell Times Changed. {} Runs changed.", changed.size()));
    EXPECT_THAT(session.boxes.shown.back().text,
                HasSubstr(fmt::format("{} runs changed and saved, {} of 6000 not changed.\n\nYou "
                                      "stopped the change.",
                                      changed.size(), 6000 - changed.size())));
    EXPECT_TRUE(isEnabled("ChangeBell"));
    EXPECT_TRUE(form().closeForm());
}

}  // namespace
