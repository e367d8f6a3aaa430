#include "runedit/map/mapanswer.h"

#include <QTest>

#include "fakemap.h"
#include "mapsession.h"
#include "platform/dde/dbustransport.h"
#include "platform/forms/application.h"
#include "runedit/map/requestline.h"
#include "support/faultof.h"
#include "support/privatebus.h"

namespace {

using namespace runedit;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class MapAnswerTest : public MapSession {
protected:
    MapAnswerTest() {
        forms::Application::instance().startAfresh();
        forms::Timer::setSpeed(200);
    }
    ~MapAnswerTest() override { forms::Timer::setSpeed(1); }

    /// Everything that the answer signals, in order.
    std::unique_ptr<MapAnswer> waiting(MapScreen screen) {
        auto answer = std::make_unique<MapAnswer>(screen, nullptr);
        const auto keep = [this](const char* event) { return [this, event] { note(event); }; };
        QObject::connect(answer.get(), &MapAnswer::status,
                         [this](const QString& text) { note(text.toStdString()); });
        QObject::connect(answer.get(), &MapAnswer::reload, keep("<reload>"));
        QObject::connect(answer.get(), &MapAnswer::lists, keep("<lists>"));
        answer->start("101-AM");
        return answer;
    }
    void note(const std::string& event) { events.push_back(event); }

    std::vector<std::string> log() const {
        const auto text = file("log.txt");
        std::vector<std::string> lines;
        for (const auto line : runedit::linesOf(text)) {
            lines.emplace_back(line.substr(0, line.find('\t')));
        }
        return lines;
    }

    FakeMap map;
    std::vector<std::string> events;
};

TEST_F(MapAnswerTest, GoesFromWaitingThroughTheCountdownToTheLists) {
    startup::TotSavedRuns = 3;
    const auto answer = waiting(MapScreen::Run);
    QTest::qWait(50);
    EXPECT_THAT(events, ElementsAre("Waiting for updated information from mapping software."));
    write("RUNDONE.TXT", "\xFF\x00 no text");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answer->isWaiting(); }));

    std::vector<std::string> expected{"Waiting for updated information from mapping software."};
    for (int seconds = 10; seconds > 0; --seconds) {
        expected.push_back("Processing Map Results..." + std::to_string(seconds) +
                           " seconds remaining");
    }
    for (const auto* event :
         {"Run Not Saved.", "<reload>", "Information Received from Mapping Software.", "<lists>"}) {
        expected.push_back(event);
    }
    EXPECT_THAT(events, ElementsAreArray(expected));
    const std::vector<std::string> logged{
        "In Tarn, in Timer1 Rundone.txt found so Timer1 code will continue after 10 second pause. ",
        "In Tarn, in Timer1 code will now continue... ",
        "In Tarn, in Timer2 about to do Command1_Click ",
        std::string("In Tarn, in Timer2 performed Command1_Click and about to see if ") +
            "Build_StopList should be run.  TotSavedRuns: 3",
        "In Tarn, in Timer2 after Build_StopList ",
        "In Tarn, in Timer2 after Build_WarnList ",
        "In Tarn, in Timer2 after Build_DirList ",
        "In Tarn, in Timer2 after Build_SpecialNeedsList "};
    EXPECT_EQ(log(), logged);

    const auto group = waiting(MapScreen::GroupRunSolve);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !group->isWaiting(); }));
    EXPECT_EQ(log()[10], "In Tarn, in Timer2 about to do Command1_Click ");
    EXPECT_EQ(log()[11],
              "In Group_Run_Solve, in Timer2 performed Command1_Click and about to see "
              "if Build_StopList should be run.  TotSavedRuns: 3");

    events.clear();
    const auto stopped = waiting(MapScreen::Run);
    ASSERT_TRUE(QTest::qWaitFor([this] { return events.size() >= 3; }));
    stopped->stop();
    events.clear();
    QTest::qWait(150);
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(MapAnswerTest, CountsWhenItIsNotAnothersAndTheRunsFileIsFree) {
    write("101-AM.dbf", "");
    write("RunDone.txt", "102-AM\n");
    const auto answer = waiting(MapScreen::Run);
    QTest::qWait(60);
    write("RunDone.txt", "101-am\r\n");
    ASSERT_TRUE(QTest::qWaitFor([this] { return events.size() == 2; }));
    EXPECT_THAT(events.back(), testing::HasSubstr("has answered, but still holds"));
    write("RunDone.txt", "102-AM\n");
    files::remove(district.progPath() + "101-AM.dbf");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answer->isWaiting(); }));
    EXPECT_EQ(events.back(), "<lists>");
}

TEST_F(MapAnswerTest, IsNotWaitedForWithoutEnd) {
    write("RunDone.txt", "102-AM\n");
    const auto answer = waiting(MapScreen::Run);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answer->isWaiting(); }));
    EXPECT_THAT(events.back(), testing::StartsWith("The mapping software has ended without an"));
    EXPECT_EQ(storedRun("REGENERATE"), "True");

    write("RunDone.txt", "101-AM\n");
    sql("DELETE FROM RUN WHERE RUN = '101-AM'");
    answer->start("101-AM");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answer->isWaiting(); }));
    EXPECT_EQ(events.back(), "The run was deleted while it was with the mapping software.");
}

/// The real map side on a real bus of its own, with the waiting of the forms sped up.
class RoundTrip : public MapSession {
protected:
    RoundTrip() {
        forms::Application::instance().startAfresh();
        forms::Timer::setSpeed(100);
        dde::setTransport(&transport);
        sql("UPDATE STOP SET XPOS = 1000 * INT_STOPID, YPOS = 5280, ADDR1 = 'Lot ' || INT_STOPID,"
            " RIGHTSIDE = 1");
        sql("UPDATE RUN SET REGENERATE = 1 WHERE RUN = '101-AM'");
        QObject::connect(&answer, &MapAnswer::reload, [this] { reloaded = true; });
        QObject::connect(&answer, &MapAnswer::status,
                         [this](const QString& text) { status = text.toStdString(); });
    }
    ~RoundTrip() override {
        dde::setTransport(nullptr);
        forms::Timer::setSpeed(1);
    }

    std::unique_ptr<support::ChildProgram> start(const char* name,
                                                 const std::vector<std::string>& arguments = {}) {
        return startFor(district, name, arguments);
    }
    std::unique_ptr<support::ChildProgram> startFor(const support::TestDistrict& of,
                                                    const char* name,
                                                    const std::vector<std::string>& arguments) {
        return std::make_unique<support::ChildProgram>(
            support::programOfBuild(name), arguments,
            support::ChildProgram::Variables{{"DBUS_SESSION_BUS_ADDRESS", bus.address()},
                                             {"XDG_CONFIG_HOME", of.folder()}});
    }
    std::unique_ptr<support::ChildProgram> map(const std::vector<std::string>& arguments) {
        auto program = start("vireo-map", arguments);
        EXPECT_TRUE(program->waitForLine("Ready"));
        return program;
    }
    /// What a form tells the planner; blank where the map has the run.
    static std::string mapIt() {
        return support::faultOf([] { sendRunToMap("101-AM", MapScreen::Run); });
    }
    void waitForAnswer() {
        reloaded = false;
        answer.start("101-AM");
        EXPECT_TRUE(QTest::qWaitFor([this] { return !answer.isWaiting(); }));
    }

    support::PrivateBus bus;
    dde::DBusTransport transport{bus.address(), 10s};
    dde::DBusTransport impatient{bus.address(), 400ms};
    MapAnswer answer{nullptr};
    std::string status;
    bool reloaded = false;
};

class SeenOrNot : public RoundTrip, public testing::WithParamInterface<bool> {
protected:
    /// A map with a window takes over at once where its planner does not want to be asked.
    std::unique_ptr<support::ChildProgram> mapOfEither(std::vector<std::string> arguments) {
        if (GetParam()) {
            files::write(district.folder() + "/vireo/vireo-map-windows.ini",
                         "[MapWindow]\nAskFirst=false\n");
            arguments.emplace_back("--window");
        }
        return map(arguments);
    }
};

INSTANTIATE_TEST_SUITE_P(Map, SeenOrNot, testing::Bool());

TEST_P(SeenOrNot, ARunComesBackSolvedAndIsBusyWhileItIsHeld) {
    const auto program = mapOfEither({"--work", "0.05", "--hold", "1"});
    ASSERT_EQ(mapIt(), "");
    EXPECT_EQ(mapIt(), MapStillProcessingText);
    EXPECT_FALSE(deleteMapFiles("101-AM"));
    waitForAnswer();
    EXPECT_TRUE(reloaded);
    EXPECT_EQ(status, "Information Received from Mapping Software.");
    // 2,000 feet along the street, 20 miles an hour, counted from the start of the run.
    EXPECT_EQ(row("SELECT DIST_TOSTOP, CUM_MILES, TIME_AT_STOP FROM STOP_TRIPTYPE WHERE RUN = "
                  "'101-AM' AND RUNSEQ = 2"),
              "0.38|0.38|7:06:08 AM");
    EXPECT_EQ(row("SELECT STARTTIME, ENDTIME, TOTAL_MILES, total_stops, FirstStop, LastStop, "
                  "REGENERATE FROM RUN WHERE RUN = '101-AM'"),
              "7:05:00 AM|7:06:08 AM|0.38|2|3|1|False");
    EXPECT_EQ(row("SELECT LINETEXT1 FROM RUNDIR WHERE RUN = '101-AM' AND LINETYPE = 'Direction'"),
              "Follow 5th Street, go west");
}

/// As long as the planner at the map thinks it over.
TEST_F(RoundTrip, AMapWhosePlannerIsAskedIsWaitedFor) {
    const auto program = map({"--work", "0.05", "--window"});
    ASSERT_EQ(mapIt(), "");
    answer.start("101-AM");
    QTest::qWait(1500);  // two and a half minutes of the forms' time
    EXPECT_TRUE(answer.isWaiting());
    EXPECT_EQ(mapIt(), MapStillProcessingText);
    EXPECT_EQ(status, "Waiting for updated information from mapping software.");
    write("RunDone.txt", "101-AM\n");
    program->kill();
    deleteMapFiles("101-AM");
    EXPECT_TRUE(QTest::qWaitFor([this] { return !answer.isWaiting(); }));
    EXPECT_TRUE(reloaded);
}

TEST_P(SeenOrNot, TheCleanUpProgramWaitsUntilTheMapLetsGo) {
    const auto program = mapOfEither({"--work", "0", "--hold", "60"});
    ASSERT_EQ(mapIt(), "");
    write("101-AMtime.txt", "");
    const auto cleanUp = start("DelWrkFiles.exe");
    const auto logged = [this](const char* text) {
        return file("log.txt").find(text) != std::string::npos;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return logged("able to delete file: 101-AMtime.txt."); }));
    EXPECT_TRUE(logged("unable to delete file: 101-AM.dbf."));
    EXPECT_TRUE(mapFilesLeft("101-AM"));
    program->kill();
    EXPECT_EQ(cleanUp->readLine(), "");  // it has ended
    EXPECT_FALSE(mapFilesLeft("101-AM"));
    EXPECT_THAT(workFiles(), testing::Not(testing::Contains(testing::Key("Runs.txt"))));
}

TEST_F(RoundTrip, AMapThatCannotOrDoesNotAnswerLeavesNothingBehind) {
    struct Case {
        const char* fault;
        const char* told;
    };
    for (const auto& [fault, told] :
         {Case{"refuse", "ArcView refused the request: The street network is not"},
          Case{"silence", "ArcView did not answer within 0.4 seconds."}}) {
        const auto program = map({"--play", fault});
        dde::setTransport(&impatient);
        EXPECT_THAT(mapIt(), testing::StartsWith(told));
        EXPECT_THAT(workFiles(), IsEmpty());
    }
    EXPECT_EQ(mapIt(), "ArcView is not running.  Please start it and try again.");
    // The last that is written of a run takes all of it back.
    sql("CREATE TRIGGER keep BEFORE UPDATE OF TOTAL_MILES ON RUN BEGIN SELECT RAISE(ROLLBACK, "
        "'kept'); END");
    const auto before = rows("SELECT * FROM STOP_TRIPTYPE");
    const auto program = map({"--work", "0"});
    ASSERT_EQ(mapIt(), "");
    waitForAnswer();
    EXPECT_EQ(rows("SELECT * FROM STOP_TRIPTYPE"), before);
}

TEST_F(RoundTrip, AMapThatDiesInTheMiddleIsToldAndTheRunCanGoAgain) {
    {
        const auto program = map({"--work", "0.1", "--play", "die"});
        ASSERT_EQ(mapIt(), "");
        waitForAnswer();
    }
    EXPECT_FALSE(reloaded || answer.isWaiting());
    EXPECT_EQ(file("log.txt"), "");
    EXPECT_EQ(status, "The mapping software has ended without an answer. Go to the map again.");
    ASSERT_TRUE(mapFilesLeft("101-AM"));
    ASSERT_TRUE(deleteMapFiles("101-AM"));

    const auto program = map({"--work", "0", "--play", "file-stays"});
    ASSERT_EQ(mapIt(), "");
    answer.start("101-AM");
    ASSERT_TRUE(QTest::qWaitFor([&] { return status.find("still holds") != std::string::npos; }));
    EXPECT_TRUE(answer.isWaiting() && mapFilesLeft("101-AM") && !deleteMapFiles("101-AM"));
}

TEST_F(RoundTrip, EachDistrictIsServedByItsOwnMapWhicheverWasThereFirst) {
    const support::TestDistrict other;
    const auto former = startFor(other, "vireo-map", {"--no-window"});
    ASSERT_TRUE(former->waitForLine("Ready"));
    {
        const auto own = map({"--work", "0.05", "--hold", "0.2"});
        ASSERT_EQ(mapIt(), "");
        waitForAnswer();
        EXPECT_EQ(status, "Information Received from Mapping Software.");
        // One a district.
        EXPECT_FALSE(start("vireo-map", {"--no-window"})->waitForLine("Ready"));
    }
    EXPECT_THAT(mapIt(),
                testing::StartsWith("ArcView refused the request: No map of the district"));
    const auto own = map({"--work", "0.05", "--hold", "0.2"});
    former->kill();
    ASSERT_TRUE(QTest::qWaitFor([] { return mapIt().empty(); }));
    waitForAnswer();
    EXPECT_TRUE(reloaded);
}

}  // namespace
