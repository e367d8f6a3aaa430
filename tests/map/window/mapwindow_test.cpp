#include "map/window/mapwindow.h"

#include <QAccessible>
#include <QAction>
#include <QMenu>
#include <QTest>

#include "map/window/mapview.h"
#include "map/window/rowlist.h"
#include "platform/forms/filedialog.h"
#include "startup/base/session.h"
#include "streets/network/gridnetwork.h"
#include "support/access.h"
#include "support/formtest.h"
#include "support/inventedcity.h"
#include "support/runbuilder.h"
#include "support/temporaryfolder.h"
#include "support/wheel.h"

namespace map {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

/// Stops a mile apart, three minutes of driving.
void fillMile(const support::TestDistrict& district) {
    support::fillSmall(district);
    const auto at = [](int miles, const char* address) {
        return support::TestDistrict::Row{
            {"XPOS", 660 + 5280 * miles}, {"YPOS", 660}, {"ADDR1", address}};
    };
    for (const std::string run : {"MILE-1", "MILE-2"}) {
        support::RunBuilder(run)
            .school("OAK")
            .ends("8:00")
            .with("PICKUP", true)
            .with("TimeToUse", "End Time")
            .with("TOTAL_TIME", 20)
            .stop(run + "A", {.students = 4, .at = "7:40", .ofStop = at(0, "First")})
            .stop(run + "B", {.students = 2, .at = "7:44", .ofStop = at(2, "Second")})
            .stop(run + "C", {.students = 3, .at = "7:51", .ofStop = at(1, "Third")})
            .stop(run + "S", {.at = "8:00", .type = "SCHOOL", .ofStop = at(3, "School")})
            .into(district);
    }
}

class MapWindowForm : public support::FormTest<> {
protected:
    MapWindowForm() : FormTest(fillMile) { window().showRun("MILE-1"); }
    MapWindow& form() override { return window(); }
    static MapWindow& window() {
        static const auto streets = std::make_shared<const streets::DistrictStreets>(
            streets::gridNetwork({}), streets::Grid{});
        return made<MapWindow>(
            MapDistrict{*startup::gcnRouting, streets, [] { return user; },
                        [](bool /*tell*/) { return user == "PAT" ? homes : std::nullopt; }});
    }
    static inline std::string user = "PAT";
    static inline std::optional<std::vector<streets::Home>> homes = {};
    MapView& map() { return control<MapView>("Streets"); }
    RowList& rowList() { return control<RowList>("Rows"); }
    std::vector<std::string> rowsShown(std::size_t cell) {
        std::vector<std::string> all;
        for (int i = 0; rowList().row(i) != nullptr; ++i) {
            all.push_back(rowList().row(i)->number + ":" + rowList().row(i)->cells[cell]);
        }
        return all;
    }
    static std::vector<std::string> times(const std::string& run = "MILE-1") {
        return rows(
            "SELECT STOP.ADDR1, STOP_TRIPTYPE.TIME_AT_STOP FROM STOP INNER JOIN "
            "STOP_TRIPTYPE ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID WHERE "
            "STOP_TRIPTYPE.RUN='" +
            run + "' ORDER BY STOP_TRIPTYPE.RUNSEQ");
    }
};

const auto Untouched =
    ElementsAre("First|7:40:00 AM", "Second|7:44:00 AM", "Third|7:51:00 AM", "School|8:00:00 AM");

TEST_F(MapWindowForm, ARunIsSavedOnlyWhenItIsTakenOver) {
    EXPECT_THAT(rowsShown(1), ElementsAre("1:07:40", "2:07:44", "3:07:51", ":08:00"));
    EXPECT_THAT(support::accessFindings(window()), IsEmpty());
    const auto disc = [&](int row) {
        const auto place = rowList().visualRect(rowList().model()->index(row, 0)).topLeft();
        const int line = rowList().fontMetrics().height();
        return rowList().viewport()->grab({place, QSize(line * 4 / 3, line * 2)}).toImage();
    };
    rowList().choose(1);
    EXPECT_TRUE(disc(0) != disc(2)) << "each has its stop's number";
    click("SolveIt");
    EXPECT_THAT(rowsShown(2), ElementsAre("1:+5.0", "2:+7.0", "3:+3.0", ":0.0"));
    EXPECT_TRUE(rowList().row(2)->isStrong && !rowList().row(3)->isStrong);
    EXPECT_THAT(text("Gain"), StartsWith("5.0 minutes shorter"));
    EXPECT_THAT(times(), Untouched);
    click("KeepOldWay");
    EXPECT_THAT(times(), Untouched);
    click("SolveIt");
    click("TakeOver");
    EXPECT_THAT(times(), ElementsAre("First|7:45:00 AM", "Second|7:51:00 AM", "Third|7:54:00 AM",
                                     "School|8:00:00 AM"));
    EXPECT_EQ(stored("SELECT TOTAL_TIME, TOTAL_MILES, REGENERATE, ChangedBy FROM RUN WHERE "
                     "RUN='MILE-1'"),
              "15|5|False|PAT");
    EXPECT_EQ(stored("SELECT Count(*) FROM RUNDIR WHERE RUN='MILE-1' AND LINETYPE='Stop'"), "4");
    EXPECT_EQ(text("Status"), "Run MILE-1 was taken over");
}

TEST_F(MapWindowForm, HomesAreShownToThoseWhoMaySeeThem) {
    homes = {{{"S1", {660, 960}, "1 Main Street"},
              {"", {660, 960}, ""},
              {"S2", {660, 1160}, ""},
              {"", {90'000, 660}, "far away"}}};
    byOthers("INSERT INTO STUDENT (INT_STUID, STUID) VALUES (901, 'S2')");
    byOthers(
        "INSERT INTO STU_ADDR_TRIPTYPE (INT_STUID, TRIPTYPE, INT_STOPID) SELECT 901, TRIPTYPE, "
        "INT_STOPID FROM STOP_TRIPTYPE WHERE RUN='MILE-1' AND TIME_AT_STOP='1899-12-30 07:44:00'");
    EXPECT_THAT(map().scene().homes, IsEmpty());
    window().findChild<QAction*>("Homes")->trigger();
    EXPECT_THAT(text("Status"), StartsWith("2 of 4 homes"));
    ASSERT_THAT(map().scene().homes, SizeIs(2));
    EXPECT_EQ(map().tellOf({.kind = Hit::Kind::Home, .index = 0}),
              "1 Main Street, 2 students, 300 feet in a straight line to the nearest stop 1");
    EXPECT_EQ(map().tellOf({.kind = Hit::Kind::Home, .index = 1}),
              "Home, 10572 feet in a straight line to its stop 2");
    EXPECT_THAT(map().scene().homes[1].walk, SizeIs(2));
    user = "SAM";
    window().Reload();
    EXPECT_THAT(map().scene().homes, IsEmpty());
    EXPECT_FALSE(window().findChild<QAction*>("Homes")->isChecked());
    user = "PAT";
}

TEST_F(MapWindowForm, KeepsItsSightWhenTheDirectionsAreLeft) {
    emit rowList().rowChosen(1);
    map().zoom(2);
    const auto before = map().camera().feetPerPixel();
    window().Directions_Click();
    window().Directions_Click();
    EXPECT_EQ(map().camera().feetPerPixel(), before);
}

TEST_F(MapWindowForm, IsExportedToAFileOrSaysWhyNot) {
    const support::TemporaryFolder folder;
    QString place = QString::fromStdString(folder.path() + "/map.pdf");
    forms::setFileChooser([&](const forms::FileQuestion& question) {
        EXPECT_TRUE(question.startAt.endsWith("/Map of MILE-1.pdf"));
        return place;
    });
    window().ExportIt_Click();
    EXPECT_THAT(support::contentsOf(place.toStdString()), StartsWith("%PDF"));
    place = QString::fromStdString(folder.path() + "/none/map.pdf");
    window().ExportIt_Click();
    forms::setFileChooser({});
    EXPECT_EQ(lastTitle(), "Not Exported");
}

TEST_F(MapWindowForm, NothingIsSavedOverAnothersChange) {
    click("SolveIt");
    byOthers(
        "UPDATE STOP_TRIPTYPE SET RUN='MILE-2' WHERE TIME_AT_STOP='1899-12-30 07:44:00' AND "
        "RUN='MILE-1'");
    click("TakeOver");
    EXPECT_EQ(lastTitle(), "Not Saved");
    EXPECT_THAT(rows("SELECT * FROM RUNDIR"), IsEmpty());
    // The way is that of the stops that are left.
    EXPECT_THAT(rowsShown(1), ElementsAre("1:07:51", "2:07:54", ":08:00"));
    byOthers("DELETE FROM RUN WHERE RUN='MILE-1'");
    click("KeepOldWay");
    EXPECT_EQ(text("Status"), "The run MILE-1 is not there any more");
}

TEST_F(MapWindowForm, AnswersEachRunThatAsksOnceEvenWhenItIsClosed) {
    std::vector<std::string> told;
    const auto ask = [&](const std::string& run) {
        window().ask(run, [&told, run](Decision decision) {
            told.push_back(run + (decision == Decision::TakenOver ? " taken" : " kept"));
        });
    };
    ask("MILE-1");
    ask("MILE-2");
    ask("NONE");
    window().showRun("101-AM");
    EXPECT_EQ(text("Heading"), "Run MILE-1: before and after");
    click("TakeOver");
    EXPECT_EQ(text("Heading"), "Run MILE-2: before and after");
    // Whoever asks writes what it has found itself.
    EXPECT_THAT(times(), Untouched);
    click("CloseIt");
    EXPECT_THAT(told, ElementsAre("MILE-1 taken", "MILE-2 kept", "NONE kept"));
}

TEST_F(MapWindowForm, AStopInAnotherPlaceOfTheOrderIsAPlannersMove) {
    emit rowList().rowDropped(2, 1);
    EXPECT_THAT(text("Heading"), HasSubstr("before and after"));
    EXPECT_EQ(map().scene().oldWay.empty(), true) << "all of the old way is driven, once";
    EXPECT_THAT(times(), Untouched);
    click("TakeOver");
    EXPECT_THAT(times(), ElementsAre("First|7:51:00 AM", "Third|7:54:00 AM", "Second|7:57:00 AM",
                                     "School|8:00:00 AM"));
    EXPECT_THAT(rows("SELECT StopID, ACTIVITYCODE, User FROM RUNLOG"),
                ElementsAre("MILE-1C|3|PAT"));
    // Behind all others it is one move, too.
    emit rowList().rowDropped(0, 3);
    click("TakeOver");
    EXPECT_THAT(rows("SELECT StopID FROM RUNLOG"), ElementsAre("MILE-1C", "MILE-1A"));
    // The school stays where it is.
    emit rowList().rowDropped(3, 0);
    EXPECT_THAT(text("Heading"), testing::Not(HasSubstr("before and after")));
}

TEST_F(MapWindowForm, AStopThatIsDraggedIsSavedWithItsRunOrPutBack) {
    const auto hit = map().hitOfStop(1);
    const geo::Feet to{660 + 5280 * 0.5, 660};
    emit map().stopDragged(hit, to);
    EXPECT_THAT(text("Status"), HasSubstr("Stop 2: "));
    emit map().stopPutBack(hit);
    EXPECT_EQ(map().scene().runs[0].stops[1].at.x, 660 + 5280 * 2);
    emit map().stopDropped(hit, to);
    byOthers("UPDATE STOP SET YPOS=YPOS+1 WHERE STOPID='MILE-1B'");
    click("TakeOver");
    EXPECT_EQ(lastTitle(), "Not Saved");
    EXPECT_THAT(times(), Untouched);
    click("KeepOldWay");
    emit map().stopDropped(hit, to);
    click("TakeOver");
    EXPECT_EQ(stored("SELECT XPOS, YPOS FROM STOP WHERE STOPID='MILE-1B'"), "3300|660");
    EXPECT_THAT(times(), ElementsAre("First|7:51:00 AM", "Second|7:52:30 AM", "Third|7:54:00 AM",
                                     "School|8:00:00 AM"));
}

TEST_F(MapWindowForm, AStopWithoutAPlaceGetsOneOfThoseFound) {
    byOthers(
        "UPDATE STOP SET XPOS=0, YPOS=NULL, ADDR1='1st Street at 2nd Avenue' WHERE "
        "STOPID='MILE-1B'");
    window().Reload();
    EXPECT_FALSE(isShown("PlaceIt"));
    emit rowList().rowChosen(1);
    EXPECT_THAT(text("Status"), HasSubstr("not on the map"));
    click("PlaceIt");
    ASSERT_TRUE(QTest::qWaitFor([&] { return text("Heading") == "A place for stop 2"; }));
    ASSERT_NE(rowList().row(0), nullptr);
    EXPECT_EQ(rowList().row(0)->title, "1st Street at 2nd Avenue");
    EXPECT_THAT(text("Trouble"), HasSubstr("Passengers 9"));
    click("PlaceIt");
    click("TakeOver");
    EXPECT_EQ(stored("SELECT XPOS, YPOS FROM STOP WHERE STOPID='MILE-1B'"), "1980|660");
    EXPECT_THAT(times(), testing::Contains("1st Street at 2nd Avenue|7:51:45 AM"));
}

class MapOnStreets : public MapWindowForm {
protected:
    MapOnStreets() {
        byOthers("UPDATE STOP SET XPOS=XPOS/4");
        window().driveOn(std::make_shared<const streets::DistrictStreets>(
            support::inventedCity(24), streets::DrivingRules(), std::vector<std::uint32_t>(),
            std::vector<std::string>()));
    }
    /// The entry of the menu that a right click on the middle of the second leg opens.
    QAction* offered(const char* beginning) {
        const auto line = map().scene().runs.at(0).legs.at(0).line;
        emit map().menuAsked({}, line[line.size() / 2]);
        for (auto* menu : window().findChildren<QMenu*>()) {
            for (auto* action : menu->actions()) {
                if (action->text().startsWith(QLatin1String(beginning))) {
                    return action;
                }
            }
        }
        return nullptr;
    }
    bool comesTo(const char* heading) {
        return QTest::qWaitFor([&] { return text("Heading").starts_with(heading); });
    }
    bool comes(const char* words) {
        return QTest::qWaitFor([&] { return text("Gain").find(words) != std::string::npos; });
    }
};

TEST_F(MapOnStreets, StopsWithoutAPlaceAreEachGivenOneAndSavedTogether) {
    byOthers("UPDATE STOP SET XPOS=0, YPOS=NULL WHERE STOPID IN ('MILE-1A', 'MILE-1B')");
    const std::string First = "East Plder Street at 18th Avenue";
    const std::string Second = "East Nlder Street at 17th Avenue";
    byOthers("UPDATE STOP SET ADDR1='" + First + "' WHERE STOPID='MILE-1A'");
    byOthers("UPDATE STOP SET ADDR1='" + Second + "' WHERE STOPID='MILE-1B'");
    window().Reload();
    emit rowList().rowChosen(1);
    for (const auto* heading : {"A place for stop 2", "A place for stop 1"}) {
        click("PlaceIt");
        ASSERT_TRUE(comesTo(heading)) << text("Status");
        emit rowList().rowChosen(1);
        click("PlaceIt");
        EXPECT_THAT(rows("SELECT XPOS FROM STOP WHERE YPOS IS NULL"), SizeIs(2));
    }
    std::vector<std::string> shown;
    for (int i = 0; rowList().row(i) != nullptr; ++i) {
        shown.push_back(rowList().row(i)->title);
    }
    click("TakeOver");
    // The one between them was moved: the second one found its best place behind it.
    EXPECT_THAT(shown, ElementsAre(First, "Third", Second, "School"));
    EXPECT_THAT(rows("SELECT STOP.ADDR1 FROM STOP INNER JOIN STOP_TRIPTYPE ON STOP.INT_STOPID = "
                     "STOP_TRIPTYPE.INT_STOPID WHERE STOP_TRIPTYPE.RUN='MILE-1' ORDER BY "
                     "STOP_TRIPTYPE.RUNSEQ"),
                testing::ElementsAreArray(shown));
    EXPECT_THAT(rows("SELECT StopID, ACTIVITYCODE, User FROM RUNLOG"),
                ElementsAre("MILE-1C|3|PAT"));
    EXPECT_THAT(rows("SELECT STOPID FROM STOP WHERE RIGHTSIDE=True ORDER BY STOPID"),
                ElementsAre("MILE-1A", "MILE-1B"));
    EXPECT_THAT(rows("SELECT XPOS FROM STOP WHERE YPOS IS NULL"), SizeIs(0));
}

TEST_F(MapOnStreets, AStreetIsAvoidedUntilTheRunIsTakenOverOrLeft) {
    auto* avoid = offered("&Avoid This Street");
    ASSERT_NE(avoid, nullptr);
    avoid->trigger();
    ASSERT_TRUE(comes("Avoids "));
    EXPECT_THAT(times(), Untouched);
    ASSERT_NE(offered("&Forget All Detours"), nullptr);
    offered("&Forget All Detours")->trigger();
    ASSERT_TRUE(QTest::qWaitFor([&] { return text("Gain").find("Avoids") == std::string::npos; }));
    offered("Allow &U-Turn Here")->trigger();
    ASSERT_TRUE(comes("U-turn allowed"));
    click("TakeOver");
    EXPECT_THAT(text("Status"), HasSubstr("Its detours are not kept"));
    EXPECT_THAT(times(), testing::Not(Untouched));
    click("SolveIt");
    EXPECT_THAT(text("Gain"), testing::Not(HasSubstr("U-turn")));
}

TEST_F(MapWindowForm, TabGoesFromStopToStopAndTellsEach) {
    map().setFocus();
    std::vector<std::string> told;
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(&map(), Qt::Key_Tab);
        auto* access = QAccessible::queryAccessibleInterface(&map());
        ASSERT_NE(access->focusChild(), nullptr);
        told.push_back(access->focusChild()->text(QAccessible::Name).toStdString());
    }
    EXPECT_THAT(told, ElementsAre("Stop 1 of 3, First, 07:40 AM, 4 board",
                                  "Stop 2 of 3, Second, 07:44 AM, 2 board",
                                  "Stop 3 of 3, Third, 07:51 AM, 3 board"));
    EXPECT_EQ(rowList().chosen(), 2);
    // Nearer to the stop and back.
    const auto before = map().camera().feetPerPixel();
    QTest::keyClick(&map(), Qt::Key_Return);
    EXPECT_EQ(map().camera().feetPerPixel(), 1);
    QTest::keyClick(&map(), Qt::Key_Escape);
    EXPECT_EQ(map().camera().feetPerPixel(), before);
    const QPointF at(20, 30);
    const auto place = map().camera().toFeet(at);
    support::turnWheel(map(), at, 1);
    EXPECT_LT(map().camera().feetPerPixel(), before);
    EXPECT_NEAR(map().camera().toFeet(at).x, place.x, 1e-6);
    support::turnWheel(map(), at, -1);
    EXPECT_NEAR(map().camera().feetPerPixel(), before, 1e-9);
}

TEST_F(MapWindowForm, SeveralRunsAreShownHiddenAndSolvedOneAfterAnother) {
    window().SchoolRuns_Click();
    EXPECT_THAT(rowsShown(0), testing::IsSupersetOf({"MILE-1:3", "MILE-2:3"}));
    const auto of = [&](const std::string& run) {
        int row = 0;
        while (rowList().row(row)->number != run) {
            ++row;
        }
        return row;
    };
    for (int i = 0; rowList().row(i) != nullptr; ++i) {
        if (i != of("MILE-1") && i != of("MILE-2")) {
            rowList().choose(i);
            QTest::keyClick(&rowList(), Qt::Key_Space);
        }
    }
    EXPECT_THAT(text("Status"), StartsWith("2 of "));
    click("SolveRuns");
    click("KeepOldWay");
    click("TakeOver");
    EXPECT_THAT(times("MILE-1"), Untouched);
    EXPECT_THAT(times("MILE-2"), testing::Not(Untouched));
    rowList().choose(of("MILE-2"));
    emit rowList().rowActivated(of("MILE-2"));
    EXPECT_EQ(text("Heading"), "Run MILE-2");
}

TEST_F(MapWindowForm, FoldsItsPanelAndPutsItBelowTheMap) {
    window().resize(1300, 700);
    EXPECT_FALSE(rowList().isNarrow());
    window().resize(1000, 700);
    EXPECT_TRUE(rowList().isNarrow());
    window().resize(700, 700);
    EXPECT_FALSE(rowList().isNarrow());
    EXPECT_LT(map().mapTo(&window(), QPoint(0, 0)).y(),
              rowList().mapTo(&window(), QPoint(0, 0)).y());
}

}  // namespace

}  // namespace map
