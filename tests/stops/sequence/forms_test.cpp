#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <numeric>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/operation.h"
#include "runedit/map/fakemap.h"
#include "startup/base/mdlGetMapSoftware.h"
#include "startup/base/session.h"
#include "stops/search/frmSelStops.h"
#include "stops/sequence/Add_Remove_Stops.h"
#include "stopsdistrict.h"
#include "support/testsession.h"

namespace stops {

namespace {

using controls::MultiColumnList;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The real forms on the district of stops; a planner stays on the main form behind them.
class StopForms : public StopsDistrict {
protected:
    struct MainForm : forms::Form {
        MainForm() : forms::Form("MainForm") {}
    };

    StopForms() {
        forms::Application::instance().startAfresh();
        for (const auto* more :
             {"INSERT INTO RUN (RUN, TRIPTYPE, ACTIVE) VALUES ('R1', 'AM', True)",
              "INSERT INTO RUN (RUN, TRIPTYPE, ACTIVE) VALUES ('R2', 'AM', True)",
              "INSERT INTO SYSTEM (NEEDDEADHEADBUILD) VALUES (False)",
              "INSERT INTO TRIPTYPE (TRIPTYPE, ACTIVE) VALUES ('AM', True)"}) {
            connection.Execute(more);
        }
        session.start(district.configFolder());
        startup::gCommandLine = "PAT";
        forms::FormRegistry::instance().make<MainForm>().showForm();
    }
    ~StopForms() override {
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
        controls::LayoutMemory::instance().forget();
    }

    Add_Remove_Stops& form() {
        auto& made = forms::FormRegistry::instance().make<Add_Remove_Stops>();
        if (!made.isLoaded()) {
            made.edit("R1 ");
            made.showForm();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&made));
        }
        return made;
    }
    template <class Control>
    static Control& control(forms::Form& on, const char* name) {
        auto* found = on.findChild<Control*>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    MultiColumnList& list(const char* name) { return control<MultiColumnList>(form(), name); }
    std::string text(const char* name) {
        return control<QLabel>(form(), name).text().toStdString();
    }
    void click(const char* name) { control<QAbstractButton>(form(), name).click(); }
    void check(const char* name, bool on) { control<QAbstractButton>(form(), name).setChecked(on); }
    void select(const char* name, const std::vector<int>& rows) { list(name).selectRows(rows); }
    static void press(QWidget& where, int key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(&where, static_cast<Qt::Key>(key), with);
    }

    std::string stopIds(const char* name) {
        std::string ids;
        for (int row = 0; row < list(name).rows(); ++row) {
            ids += (row == 0 ? "" : " ") + list(name).cellText(row, 0) +
                   (list(name).isRowSelected(row) ? "*" : "");
        }
        return ids;
    }

    support::TestSession session;
};

TEST_F(StopForms, WorksOnARunByItsButtonsAndKeys) {
    EXPECT_FALSE(control<QWidget>(form(), "AddStop").isEnabled());
    click("cmdSearch");
    EXPECT_EQ(stopIds("lstSTOP_TRIPTYPE"), "S1 S2 S3 S4 S5") << "free ones of the run's trip type";
    select("lstSTOP_TRIPTYPE", {0, 2});
    click("AddStop");
    EXPECT_EQ(stopIds("StopList"), "S1* S3*");
    EXPECT_EQ(text("StopsInRun"), "2");
    EXPECT_EQ(text("Status"), "2 stops added.");
    EXPECT_EQ(stopIds("lstSTOP_TRIPTYPE"), "S2* S4 S5") << "the search again, on the next stop";
    press(list("lstSTOP_TRIPTYPE"), Qt::Key_Insert);
    press(list("lstSTOP_TRIPTYPE"), Qt::Key_Insert);
    EXPECT_EQ(stopIds("StopList"), "S1 S3 S2 S4*");

    list("StopList").setFocus();
    press(list("StopList"), Qt::Key_Home, Qt::AltModifier);
    EXPECT_EQ(stopIds("StopList"), "S4* S1 S3 S2");
    press(list("StopList"), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(stopIds("StopList"), "S1 S4* S3 S2");
    click("Move_to_Bottom");
    click("MoveUp");
    EXPECT_EQ(stopIds("StopList"), "S1 S3 S4* S2");
    press(list("StopList"), Qt::Key_Delete);
    EXPECT_EQ(stopIds("StopList"), "S1 S3 S2*");
    EXPECT_EQ(stopIds("lstSTOP_TRIPTYPE"), "S4 S5");

    EXPECT_TRUE(startup::RefreshRunList);
    EXPECT_THAT(rows("SELECT DISTINCT User FROM RUNLOG"), ElementsAre("PAT"));
    EXPECT_THAT(rows("SELECT ID FROM RUNLOG"), SizeIs(9));
    EXPECT_THAT(session.boxes.shown, IsEmpty());
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
    EXPECT_EQ(session.boxes.shown[0].title, "Stop does not have an Available Trip Type");
    EXPECT_EQ(text("Status"), "2 stops added.  1 not added.");
    EXPECT_EQ(stopIds("lstStop"), "S9 S8 S7 S6 S5 S4 S3 S2 S1") << "sorted as before";

    check("chkTRIPTYPES", true);
    check("chkUnassigned", false);
    control<controls::MultiColumnCombo>(form(), "cmbRUN").setText("R2");
    click("cmdSearch");
    select("lstSTOP_TRIPTYPE", {0});
    session.boxes.answers = {base::MsgAnswer::No};
    click("AddStop");
    EXPECT_EQ(shown("R2"), "S9:0");
    click("AddStop");
    EXPECT_EQ(shown("R2"), "");

    control<QLineEdit>(form(), "Description").setText("St. Mary's");
    click("cmdSearch");
    EXPECT_THAT(session.boxes.shown, SizeIs(4));
    EXPECT_EQ(session.boxes.shown[3].icon, base::MsgIcon::Critical);
    EXPECT_TRUE(form().isVisible()) << "an apostrophe ends neither the form nor the program";
}

TEST_F(StopForms, LeavingAsksForDeadHeadAndHandsTheRunToTheMap) {
    FakeMap map;
    const auto leave = [&] {
        form();
        forms::FormRegistry::instance().find("Add_Remove_Stops")->closeForm();
        EXPECT_EQ(forms::FormRegistry::instance().find("Add_Remove_Stops"), nullptr);
        forms::Application::instance().yield();
    };
    leave();
    EXPECT_THAT(rows("SELECT NEEDDEADHEADBUILD FROM SYSTEM"), ElementsAre("True"));
    EXPECT_THAT(map.taken, IsEmpty()) << "no exchange with other map software";

    connection.Execute("INSERT INTO StartEnd (Run) VALUES (' ')");
    startup::gMapSoftware = startup::ArcView;
    map.failsAt = 0;
    leave();
    ASSERT_THAT(session.boxes.shown, SizeIs(1));
    EXPECT_THAT(session.boxes.shown[0].text, testing::HasSubstr("ArcView is not running."));

    map.failsAt = -1;
    leave();
    ASSERT_THAT(map.taken, testing::Not(IsEmpty()));
    EXPECT_THAT(map.taken.back(), testing::HasSubstr("SolveRun"));

    leave();
    ASSERT_THAT(session.boxes.shown, SizeIs(2));
    EXPECT_EQ(session.boxes.shown[1].title,
              "Can't Work with MAP - Still Processing Last MAP Session.");
    EXPECT_EQ(session.boxes.shown[1].text,
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
    const auto open = [&]() -> frmSelStops& {
        auto& search = forms::FormRegistry::instance().make<frmSelStops>();
        search.whenChosen([&](const std::vector<ChosenStop>& stops) { given.push_back(stops); });
        search.showForm();
        control<QAbstractButton>(search, "cmdSearch").click();
        control<MultiColumnList>(search, "lstSTOP_TRIPTYPE").selectRows(std::vector{0, 5});
        return search;
    };
    control<QAbstractButton>(open(), "Exit").click();
    EXPECT_THAT(given, IsEmpty());
    forms::Application::instance().yield();

    auto& search = open();
    control<QAbstractButton>(search, "cmdChoose").click();
    EXPECT_FALSE(search.isLoaded());
    auto first = chosen(1);
    EXPECT_THAT(given, ElementsAre(ElementsAre(first, chosen(9))));
}

}  // namespace

}  // namespace stops
