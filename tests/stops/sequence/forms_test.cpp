#include <QHeaderView>
#include <QLabel>
#include <QTest>
#include <QTextDocumentFragment>
#include <numeric>

#include "map/small/smallmap.h"
#include "platform/forms/operation.h"
#include "runedit/map/fakemap.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "stops/search/frmSelStops.h"
#include "stops/sequence/Add_Remove_Stops.h"
#include "stopsdistrict.h"
#include "support/formtest.h"

namespace stops {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The real forms on the district of stops; a planner stays on the main form behind them.
class StopForms : public support::FormTest<StopsDistrict> {
protected:
    struct MainForm : forms::Form {
        MainForm() : forms::Form("MainForm") {}
    };

    StopForms() {
        byOthers("INSERT INTO SYSTEM (NEEDDEADHEADBUILD) VALUES (0)");
        byOthers("INSERT INTO TRIPTYPE (TRIPTYPE, ACTIVE) VALUES ('AM', 1)");
        startup::gCommandLine = "PAT";
        made<MainForm>().showForm();
    }

    Add_Remove_Stops& form() override {
        auto& form = made<Add_Remove_Stops>();
        if (!form.isLoaded()) {
            form.edit("R1 ");
            form.showForm();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
        }
        return form;
    }

    void addFirst() {
        click("cmdSearch");
        select("lstSTOP_TRIPTYPE", {0});
        click("AddStop");
    }

    std::string stopIds(const char* name) {
        auto ids = column(name);
        for (const int row : list(name).selectedRows()) {
            ids[static_cast<std::size_t>(row)] += "*";
        }
        return support::joined(ids);
    }
};

TEST_F(StopForms, WorksOnARunByItsButtonsAndKeys) {
    EXPECT_FALSE(isEnabled("AddStop"));
    byOthers("UPDATE STOP_TRIPTYPE SET NUM_STUDENTS = 3");
    click("cmdSearch");
    EXPECT_EQ(stopIds("lstSTOP_TRIPTYPE"), "S1 S2 S3 S4 S5") << "free ones of the run's trip type";
    select("lstSTOP_TRIPTYPE", {0, 2});
    EXPECT_EQ(text("SelectedCount"), "2 selected, 6 students");
    byOthers("UPDATE STOP_TRIPTYPE SET NUM_STUDENTS = 0");
    click("AddStop");
    EXPECT_EQ(stopIds("StopList"), "S1* S3*");
    EXPECT_EQ(text("StopsInRun"), "2");
    EXPECT_EQ(text("Status"), "2 stops added.");
    EXPECT_EQ(stopIds("lstSTOP_TRIPTYPE"), "S2* S4 S5") << "the search again, on the next stop";
    press("lstSTOP_TRIPTYPE", Qt::Key_Insert);
    press("lstSTOP_TRIPTYPE", Qt::Key_Insert);
    EXPECT_EQ(stopIds("StopList"), "S1 S3 S2 S4*");
    EXPECT_EQ(text("Status"), "1 stop added.  S4 is stop 4 and has no time yet.");

    list("StopList").setFocus();
    press("StopList", Qt::Key_Home, Qt::AltModifier);
    EXPECT_EQ(stopIds("StopList"), "S4* S1 S3 S2");
    press("StopList", Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(stopIds("StopList"), "S1 S4* S3 S2");
    click("Move_to_Bottom");
    click("MoveUp");
    EXPECT_EQ(stopIds("StopList"), "S1 S3 S4* S2");
    answer(base::MsgAnswer::No);
    press("StopList", Qt::Key_Delete);
    EXPECT_EQ(stopIds("StopList"), "S1 S3 S4* S2");
    EXPECT_THAT(titles(), ElementsAre("Please Confirm Removal of Stops"));
    answer(base::MsgAnswer::Yes);
    press("StopList", Qt::Key_Delete);
    EXPECT_EQ(lastText(),
              "Are you sure you want to take the stop S4 off this run?\n\nS4\nno passengers\n"
              "Stop 3 of 4 on run R1");
    EXPECT_EQ(stopIds("StopList"), "S1 S3 S2*");
    EXPECT_EQ(stopIds("lstSTOP_TRIPTYPE"), "S4 S5");
    select("lstSTOP_TRIPTYPE", {0});
    EXPECT_TRUE(isEnabled("AddStop"));
    click("cmdReset");
    EXPECT_FALSE(isEnabled("AddStop"));
    EXPECT_EQ(text("SelectedCount"), "");

    EXPECT_TRUE(startup::RefreshRunList);
    EXPECT_THAT(rows("SELECT DISTINCT User FROM RUNLOG"), ElementsAre("PAT"));
    EXPECT_THAT(rows("SELECT ID FROM RUNLOG"), SizeIs(9));
    EXPECT_THAT(titles(), SizeIs(1));
}

TEST_F(StopForms, ShowsWhatTheRunIsAndWhatItsStopsLack) {
    const char* stops = "StopList";
    byOthers("UPDATE STOP SET XPOS=1 WHERE INT_STOPID<>2");
    byOthers("UPDATE STOP_TRIPTYPE SET RUN='R1', RUNSEQ=ID, NUM_STUDENTS=ID, CUM_TIME=0.44666666");
    byOthers("UPDATE STOP SET STOPTYPE='SCHOOL' WHERE INT_STOPID=9");
    byOthers(
        "UPDATE RUN SET DESCRIPTION='Oak & Elm', SCHOOL='OAK', BELLTIME='1899-12-30 08:00:00', "
        "VEHTYPE='MINI', CAPACITY='Low' WHERE RUN='R1'");
    district.sql(data::DatabaseFile::Trip,
                 "INSERT INTO VEHTYPE (VEHTYPE, LOW) VALUES ('MINI', 12)");
    const auto plain = [&](const char* name) {
        return QTextDocumentFragment::fromHtml(control<QLabel>(name).text())
            .toPlainText()
            .simplified()
            .toStdString();
    };
    EXPECT_EQ(plain("RunText"),
              "Oak & Elm Trip Type: AM School: OAK Bell: 08:00 AM Drop Off Bus: MINI");
    EXPECT_EQ(plain("Passengers"), "Passengers: 15 of 12 seats, 3 too many");
    EXPECT_EQ(text("Unplaced"), "1 stop has no place on the map: stop 2, S2");
    EXPECT_EQ(support::joined(column(stops, 19)), "14 12 9 5 0 0") << "on the bus";
    EXPECT_EQ(row(stops, 1),
              "S2| ||2|AM|REGULAR| | |0.00|0.00|0.00|0.45|0.00|R1|2|2|2|2|no place "
              "on the map|12");
    EXPECT_TRUE(list(stops).isRed(1, 0));
    EXPECT_FALSE(list(stops).isRed(2, 0));
    EXPECT_EQ(list(stops).header()->logicalIndex(0), 17) << "the number stands at the edge";

    byOthers("UPDATE STOP_TRIPTYPE SET RUN='R2' WHERE ID=5");
    const auto at = [&](int row) {
        return list(stops).visualRect(list(stops).model()->index(row, 17)).center();
    };
    auto* rows = list(stops).viewport();
    select(stops, {0, 2, 4});
    QTest::mousePress(rows, Qt::LeftButton, {}, at(2));
    QTest::mouseMove(rows, at(5));
    QTest::mouseMove(rows, at(5) - QPoint(0, 4));
    QTest::mouseRelease(rows, Qt::LeftButton, {}, at(5) - QPoint(0, 4));
    EXPECT_EQ(stopIds(stops), "S2 S4 S1* S3* S9");
    EXPECT_EQ(text("Status"), "2 stops moved.");
    EXPECT_THAT(titles(), ElementsAre("Stop Changed by Another User"));
    QTest::mouseClick(rows, Qt::LeftButton, {}, at(1));
    EXPECT_EQ(stopIds(stops), "S2 S4* S1 S3 S9");
}

TEST_F(StopForms, ShowsTheRunOnASmallMapThatNeitherLacksNorTakesRoom) {
    const auto isShown = [&] { return control<map::SmallMap>("SmallMap").isVisible(); };
    addFirst();
    EXPECT_FALSE(isShown()) << "no stop has a place";
    EXPECT_FALSE(control<QPushButton>("ShowMap").isVisible());
    byOthers("UPDATE STOP SET XPOS=INT_STOPID*900, YPOS=400 WHERE INT_STOPID<5");
    click("AddStop");
    click("AddStop");
    form().resize(1300, 760);
    EXPECT_TRUE(isShown());
    // Discs have the numbers of the rows and follow their order.
    auto& small = control<map::SmallMap>("SmallMap");
    const auto rowsClicked = [&] {
        std::string clicked;
        for (int x = 0; x < small.width(); x += 6) {
            list("StopList").selectNone();
            QTest::mouseClick(&small, Qt::LeftButton, {}, {x, (small.height() - 28) / 2});
            const auto rows = list("StopList").selectedRows();
            const auto id = rows.empty() ? "" : list("StopList").cellText(rows.front(), 0);
            clicked += id.empty() || clicked.ends_with(id) ? "" : id;
        }
        return clicked;
    };
    EXPECT_EQ(rowsClicked(), "S1S2S3");
    EXPECT_TRUE(list("StopList").hasFocus());
    select("StopList", {2});
    press("StopList", Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(stopIds("StopList"), "S1 S3* S2");
    EXPECT_EQ(rowsClicked(), "S1S2S3") << "where they lie, whatever their order";

    click("ShowMap");
    EXPECT_FALSE(isShown());
    form().closeForm();
    form().resize(1300, 760);
    EXPECT_FALSE(isShown()) << "the planner has folded it";
    click("ShowMap");
    EXPECT_TRUE(isShown());
    form().resize(1300, 420);
    EXPECT_FALSE(isShown() || control<QPushButton>("ShowMap").isVisible());
}

TEST_F(StopForms, AsksAndTellsWhatAnActionMeets) {
    check("chkTRIPTYPES", false);
    click("cmdSearch");
    EXPECT_EQ(list("lstStop").rows(), 9);
    list("lstStop").toggleSort(0);
    select("lstStop", {1, 2, 3});
    EXPECT_EQ(stopIds("lstStop"), "S9 S8* S7* S6* S5 S4 S3 S2 S1");
    click("AddStop");
    EXPECT_EQ(stopIds("StopList"), "S7* S6*");
    ASSERT_THAT(session.boxes.shown, SizeIs(1));
    EXPECT_EQ(lastTitle(), "Stop does not have an Available Trip Type");
    EXPECT_EQ(text("Status"), "2 stops added.  1 not added.");
    EXPECT_EQ(stopIds("lstStop"), "S9 S8 S7 S6 S5 S4 S3 S2 S1") << "sorted as before";

    check("chkTRIPTYPES", true);
    check("chkUnassigned", false);
    type("cmbRUN", "R2");
    click("cmdSearch");
    select("lstSTOP_TRIPTYPE", {0});
    session.boxes.answers = {base::MsgAnswer::No};
    click("AddStop");
    EXPECT_EQ(shown("R2"), "S9:0");
    click("AddStop");
    EXPECT_EQ(shown("R2"), "");

    type("Description", "St. Mary's");
    click("cmdSearch");
    EXPECT_THAT(session.boxes.shown, SizeIs(4));
    EXPECT_EQ(session.boxes.shown[3].icon, base::MsgIcon::Critical);
    EXPECT_TRUE(form().isVisible()) << "an apostrophe ends neither the form nor the program";
}

TEST_F(StopForms, LeavingAsksForDeadHeadAndHandsTheRunToTheMap) {
    FakeMap map;
    const auto leave = [&] {
        QTest::keyClick(&form(), Qt::Key_Escape);
        EXPECT_EQ(opened("Add_Remove_Stops"), nullptr);
        forms::Application::instance().yield();
    };
    addFirst();
    auto held = heldByOthers();
    QTest::keyClick(&form(), Qt::Key_Escape);
    EXPECT_TRUE(form().isLoaded());
    EXPECT_THAT(titles(), ElementsAre("Stops Saved, Form Not Left"));
    held.reset();
    leave();
    EXPECT_THAT(rows("SELECT NEEDDEADHEADBUILD FROM SYSTEM"), ElementsAre("True"));
    EXPECT_THAT(map.taken, IsEmpty()) << "no exchange with other map software";

    connection.Execute("INSERT INTO StartEnd (Run) VALUES (' ')");
    startup::gMapSoftware = startup::ArcView;
    map.failsAt = 0;
    leave();
    EXPECT_THAT(lastText(), testing::HasSubstr("ArcView is not running."));

    map.failsAt = -1;
    leave();
    ASSERT_THAT(map.taken, testing::Not(IsEmpty()));
    EXPECT_THAT(map.taken.back(), testing::HasSubstr("SolveRun"));

    connection.Execute("UPDATE RUN SET REGENERATE=False");
    leave();
    EXPECT_EQ(storedRun("REGENERATE", "R1"), "False") << "nothing was changed";
    addFirst();
    leave();
    EXPECT_EQ(storedRun("REGENERATE", "R1"), "True");
    EXPECT_EQ(lastTitle(), "Can't Work with MAP - Still Processing Last MAP Session.");
    EXPECT_EQ(lastText(),
              "Sorry, Vireo has not finished processing and removing the work files created when "
              "you last worked with this run on the map.  Please wait for a minute or two and try "
              "again.");
}

TEST_F(StopForms, LongListsFillWhileThePlannerWorksOn) {
    district.sql(data::DatabaseFile::Routing,
                 "WITH RECURSIVE n(i) AS (VALUES (100) UNION ALL SELECT i + 1 FROM n WHERE i < "
                 "60099) INSERT INTO STOP (INT_STOPID, STOPID, STOPTYPE) SELECT i, 'X' || i, "
                 "'SCHOOL' FROM n");
    check("chkTRIPTYPES", false);
    forms::WorkSlice::endAllAtOnce(true);
    click("cmdSearch");
    const int first = list("lstStop").rows();
    EXPECT_GT(first, 0);
    EXPECT_LT(first, 60009);
    EXPECT_EQ(text("TotSel"), fmt::format("{} so far", first));
    std::vector<int> many(150);
    std::iota(many.begin(), many.end(), 20);
    select("lstStop", many);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list("lstStop").rows() > first; }));
    EXPECT_EQ(list("lstStop").selectedRows(), many);
    forms::WorkSlice::endAllAtOnce(false);

    click("AddStop");  // while the list is filling
    ASSERT_THAT(session.boxes.shown, SizeIs(1));
    EXPECT_EQ(session.boxes.shown[0].text, "Do you wish to add all 150 stops to the run?");
    EXPECT_EQ(text("StopsInRun"), "150");
    EXPECT_FALSE(form().isBusy());
    EXPECT_TRUE(QTest::qWaitFor([&] { return text("TotSel") == "60009"; }, 20'000));
    EXPECT_EQ(list("lstStop").cellText(60008, 0), "X9999") << "sorted by stop id at the end";
}

TEST_F(StopForms, TheSearchFormGivesTheChosenStops) {
    std::vector<std::vector<ChosenStop>> given;
    const auto open = [&](const char* leave) {
        auto& search = made<frmSelStops>();
        search.whenChosen([&](const std::vector<ChosenStop>& stops) { given.push_back(stops); });
        search.showForm();
        support::ControlsOf on(search);
        on.click("cmdSearch");
        on.select("lstSTOP_TRIPTYPE", {0, 5});
        on.click(leave);
        EXPECT_FALSE(search.isLoaded());
        forms::Application::instance().yield();
    };
    open("Exit");
    EXPECT_THAT(given, IsEmpty());
    open("cmdChoose");
    auto first = chosen(1);
    EXPECT_THAT(given, ElementsAre(ElementsAre(first, chosen(9))));
}

}  // namespace

}  // namespace stops
