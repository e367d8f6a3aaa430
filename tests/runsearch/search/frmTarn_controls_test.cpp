#include <QHeaderView>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <map>

#include "runsearch/schedule/scheduleview.h"
#include "tarnform.h"

namespace runsearch {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

int columnOf(const controls::MultiColumnList& list, const QString& caption) {
    for (int column = 0; column < list.model()->columnCount(); ++column) {
        if (list.model()->headerData(column, Qt::Horizontal).toString() == caption) {
            return column;
        }
    }
    return -1;
}

TEST_F(TarnForm, EnablesTheRouteCombosOnlyWithRouting) {
    const auto combos = {"cmbRoute", "cmbEmployee", "cmbVehicle", "cmbAid"};
    for (const auto* name : combos) {
        EXPECT_FALSE(isEnabled(name)) << name;
    }
    check("UseRoute");
    for (const auto* name : combos) {
        EXPECT_TRUE(isEnabled(name)) << name;
    }
    type("cmbEmployee", "12");
    leave("cmbEmployee");
    type("cmbRoute", "R1");
    EXPECT_EQ(text("EmpName"), "Smith, Ann");
    combo("cmbVehicle").setCurrentIndex(0);
    form().cmbVehicle_Click();
    EXPECT_EQ(text("VehDescription"), "Bus 7");
    check("UseRoute", false);
    EXPECT_EQ(text("EmpName"), "");
    for (const auto* name : combos) {
        EXPECT_FALSE(isEnabled(name)) << name;
        EXPECT_EQ(combo(name).text(), "") << name;
        EXPECT_GT(combo(name).count(), 0) << name;
    }
}

TEST_F(TarnForm, LetsOneKindOfStopSearchExcludeTheOther) {
    check("SearchStops");
    check("Search_Stops_TripType");
    EXPECT_FALSE(isChecked("SearchStops"));
    check("SearchStops");
    EXPECT_FALSE(isChecked("Search_Stops_TripType"));
    click("cmdReset");
    EXPECT_TRUE(isChecked("SearchStops"));
}

TEST_F(TarnForm, CountsWhatIsSelectedUntilTheListIsFilledAnew) {
    found();
    auto& runs = list("RunList");
    const auto selected = [&](const char* afterwards) {
        click("SelectAll");
        EXPECT_EQ(text("SelectedCount"), std::to_string(runs.selectedCount()) + " selected");
        click(afterwards);
        EXPECT_EQ(text("SelectedCount"), "");
        return runs.rows();
    };
    EXPECT_EQ(selected("cmdSearch"), 4);
    type("RunId", "none");
    EXPECT_EQ(selected("cmdSearch"), 0);
    click("cmdReset");
    found();
    EXPECT_EQ(selected("cmdReset"), 0);
}

TEST_F(TarnForm, SortsTimesAndNumbersByWhatTheyAre) {
    found();
    auto& runs = list("RunList");
    form().show();
    const auto clickHeader = [&](const char* caption) {
        auto& header = *runs.header();
        const int column = columnOf(runs, caption);
        runs.scrollTo(runs.model()->index(0, column));
        const QPoint middle(header.sectionViewportPosition(column) + header.sectionSize(column) / 2,
                            header.height() / 2);
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, middle);
    };
    clickHeader("Bell Time");
    EXPECT_EQ(runs.cellText(0, 0), "103-PM");
    EXPECT_EQ(runs.cellText(1, 4), "12:15 AM");
    EXPECT_EQ(runs.cellText(3, 4), "03:00 PM");
    EXPECT_EQ(runs.sortOrder(), Qt::AscendingOrder);
    clickHeader("Total Miles");
    clickHeader("Total Miles");
    EXPECT_EQ(runs.cellText(0, 10), "12.50");
    EXPECT_EQ(runs.cellText(1, 10), "9.00");
    found();
    EXPECT_EQ(runs.sortColumn(), -1);
}

TEST_F(TarnForm, ResetsEverythingToTheStart) {
    type("RunId", "1");
    type("Start_BegTime", "07:00 AM");
    type("cmbLOCCODE", "NORTH");
    select("lstSchool", {0});
    check("UseRoute");
    check("NeedResolve");
    found();
    control<QTabWidget>("RunTab").setCurrentIndex(1);
    click("cmdReset");
    EXPECT_EQ(control<QTabWidget>("RunTab").currentIndex(), 0);
    EXPECT_EQ(text("TotSel"), "");
    EXPECT_EQ(list("RunList").model()->columnCount(), 0);
    EXPECT_EQ(list("lstSchool").selectedCount(), 0);
    EXPECT_EQ(control<QTabWidget>("RunTab").tabText(0), "Run and Times");
    EXPECT_EQ(found().size(), 4U);
    EXPECT_EQ(list("RunList").model()->columnCount(), 15);
}

TEST_F(TarnForm, CountsCriteriaOnTheTabsThatHoldThem) {
    auto& tabs = control<QTabWidget>("RunTab");
    type("RunId", "1");
    type("Bell_BegTime", "7:00 am");
    select("lstTripType", {0, 1});
    EXPECT_EQ(tabs.tabText(0), "Run and Times (2)");
    EXPECT_EQ(tabs.tabText(1), "Schools and Trip Types (1)");
    EXPECT_EQ(tabs.tabText(2), "Route");
    EXPECT_EQ(text("TripTypeCount"), "2 of 2");
    check("UseRoute");
    type("cmbVehicle", "B7");
    check("NotOnRoute");
    EXPECT_EQ(tabs.tabText(2), "Route (2)");
}

TEST_F(TarnForm, SearchesOnEnterAndF5) {
    form().showForm();
    auto& box = control<QLineEdit>("RunId");
    QTest::keyClicks(&box, "101");
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(text("TotSel"), "1");
    auto& time = control<controls::TimeBox>("Start_BegTime");
    QTest::keyClicks(&time, "8:00");
    QTest::keyClick(&time, Qt::Key_Enter);
    EXPECT_EQ(text("TotSel"), "0");
    time.clear();
    auto& family = combo("cmbRunFamily");
    QTest::keyClicks(&family, "REG");
    QTest::keyClick(&family, Qt::Key_Return);
    EXPECT_EQ(text("TotSel"), "1");
}

TEST_F(TarnForm, LeadsFromACriterionIntoTheListAndBack) {
    found();
    form().showForm();
    QCoreApplication::processEvents();
    control("RunId").setFocus();
    press("RunId", Qt::Key_Down);
    EXPECT_TRUE(list("RunList").hasFocus());
    EXPECT_EQ(text("Tarn"), list("RunList").cellText(0, 0));
    press("RunList", Qt::Key_F6);
    EXPECT_TRUE(control("RunId").hasFocus());
    press("RunId", Qt::Key_F6);
    QTest::keyClicks(&list("RunList"), "103");
    EXPECT_EQ(text("Tarn"), "103-PM");
}

TEST_F(TarnForm, OffersNoGroupActionBeforeRunsWereFound) {
    const auto buttons = {"ChangeBell", "GroupChange", "GroupSolve"};
    const auto expectEnabled = [&](bool enabled) {
        for (const auto* name : buttons) {
            EXPECT_EQ(isEnabled(name), enabled) << name;
        }
    };
    expectEnabled(false);
    type("RunId", "none");
    found();
    expectEnabled(false);
    type("RunId", "");
    found();
    expectEnabled(true);
    click("cmdReset");
    expectEnabled(false);
    startup::gSecurityOn = true;
    found();
    startup::gSecurityOn = false;
    for (const auto* name : {"cmdNew", "Delete", "ChangeBell", "GroupChange"}) {
        EXPECT_FALSE(isEnabled(name)) << name;
    }
    found();
    EXPECT_TRUE(isEnabled("ChangeBell"));
    EXPECT_FALSE(isEnabled("Delete")) << "taken away for good";
}

TEST_F(TarnForm, OffersReportsOnTheRunsFound) {
    EXPECT_FALSE(isEnabled("PrintIt") || isShown("Tarn") || isShown("chkNew"));
    found();
    click("PrintIt");
    auto* selection = opened("ReportSelection");
    ASSERT_NE(selection, nullptr);
    EXPECT_EQ(selection->windowTitle(), "Run Search Reports");
    EXPECT_EQ(support::ControlsOf(*selection).text("Selection"), "4 runs: all runs");
}

TEST_F(TarnForm, OpensTheScheduleOfItsRunsAndBothKeepOneChosenRun) {
    EXPECT_FALSE(isEnabled("TimeLine"));
    found();
    choose("RunList", "102-AM");
    click("TimeLine");
    auto* schedule = opened("frmRunSchdl");
    ASSERT_NE(schedule, nullptr);
    auto* view = schedule->findChild<schedule::ScheduleView*>("TimeLine");
    const auto selected = [&] { return view->plan()->run(view->selected()).id; };
    EXPECT_EQ(selected(), "102-AM");
    choose("RunList", "101-AM");
    EXPECT_EQ(selected(), "101-AM");
    view->runChosen(view->selected() == 0 ? 3 : 0);
    EXPECT_NE(text("Tarn"), "101-AM");
    click("cmdReset");
    EXPECT_FALSE(isEnabled("TimeLine"));
}

TEST_F(TarnForm, OffersInItsMenuBarEveryButtonAsItIs) {
    std::map<QString, QAction*> offered;
    for (auto* menu : form().findChild<QMenuBar*>()->findChildren<QMenu*>()) {
        emit menu->aboutToShow();
        for (auto* action : menu->actions()) {
            offered[action->text().section('\t', 0, 0)] = action;
        }
    }
    for (const auto* button : form().findChildren<QPushButton*>()) {
        if (button->isVisibleTo(&form())) {
            ASSERT_TRUE(offered.contains(button->text())) << button->text().toStdString();
            EXPECT_EQ(offered[button->text()]->isEnabled(), button->isEnabled());
        }
    }
    EXPECT_TRUE(offered.contains("Ma&p") && offered.contains("Run L&og"));
    offered["&Find Now"]->trigger();
    EXPECT_EQ(text("TotSel"), "4");
    offered["Route"]->trigger();
    EXPECT_EQ(control<QTabWidget>("RunTab").currentIndex(), 2);
}

TEST_F(TarnForm, EndsTheProgramOnExitAndWhenClosed) {
    click("Exit");
    EXPECT_TRUE(ending());
    EXPECT_FALSE(startup::gcnRouting);
    forms::Application::instance().startAfresh();
    EXPECT_THROW((void)form().Form_QueryUnload(), base::EndProgram);
}

TEST_F(TarnForm, LogsOffOnceTheLogonProgramIsThere) {
    session.processes.failure = base::errors::FileNotFound;
    form().LogOff_Click();
    EXPECT_EQ(lastTitle(), "Not Logged Off");
    EXPECT_TRUE(startup::gcnRouting);
    session.processes.failure = 0;
    EXPECT_THROW(form().LogOff_Click(), base::EndProgram);
    EXPECT_EQ(session.processes.started.back(), startup::gProgPath + "Logon.Exe TARN");
    EXPECT_THROW(form().SwitchDistrict_Click(), base::EndProgram);
    EXPECT_THAT(session.processes.started.back(), testing::EndsWith("vireo --choose"));
}

}  // namespace
}  // namespace runsearch
