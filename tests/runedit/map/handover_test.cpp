#include "runedit/map/handover.h"

#include <array>
#include <atomic>
#include <csignal>
#include <thread>

#include <sys/resource.h>

#include "fakemap.h"
#include "mapsession.h"
#include "platform/base/value.h"
#include "platform/dbf/tablefile.h"
#include "runedit/map/Set_StartorEnd.h"
#include "runedit/map/requestline.h"
#include "startup/base/mdlDBConnection.h"

namespace {

using namespace runedit;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::StartsWith;
using testing::UnorderedElementsAre;

constexpr auto Line = "101-AM|Run|Start|7:05:00 AM|7:45:00 AM|8:00:00 AM|LARGE|74\n";

/// No file of this process may grow beyond 100 bytes.
class FullDisk {
public:
    FullDisk() {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit tight{100, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &tight);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

class HandOverTest : public MapSession {
protected:
    FakeMap map;
};

TEST_F(HandOverTest, WritesFilesAndRecordAndThenAsksTheMap) {
    write("runs.TXT", "before\n");
    write("rundone.txt", "");
    map.whenTaken = [&] {
        EXPECT_EQ(file("Runs.txt"), Line);
        EXPECT_EQ(workFiles().count("rundone.txt"), 0U);
    };
    sendRunToMap("101-am", MapScreen::Run);

    EXPECT_THAT(map.taken, ElementsAre(StartsWith("ArcView|System av.Run(\"ShowMap\""),
                                       StartsWith("ArcView|System av.Run(\"StartRun\"")));
    EXPECT_THAT(workFiles(), UnorderedElementsAre(Key("Runs.txt"), Key("RunsOld.txt"),
                                                  Key("RunsOrg.txt"), Key("101-AM.dbf")));
    EXPECT_EQ(file("RunsOld.txt"), "before\n");
    EXPECT_EQ(file("RunsOrg.txt"), Line);
    EXPECT_EQ(row("SELECT * FROM StartEnd"),
              "Start|7:05:00 AM|101-AM|LARGE|8:00:00 AM|True|74|True");
    const auto stops = dbf::tableIn(file("101-AM.dbf"));
    ASSERT_THAT(stops.rows, testing::SizeIs(2));
    EXPECT_EQ(stops.rows[0][0].asText() + stops.rows[1][0].asText(), "S3S1");
    EXPECT_EQ(stops.rows[1][12], base::Value(1));
}

TEST_F(HandOverTest, TheOtherScreensHaveTheRunSolvedWithClosedStreets) {
    sql("INSERT INTO RUN(RUN) VALUES ('A/B')");
    sql("UPDATE District SET GIS_CLOSEDSTREETFILENAME = 'works.avl'");
    sql("UPDATE RUN SET Capacity = ' ', OverFill = NULL, BELLTIME = NULL WHERE RUN = '101-AM'");
    sendRunToMap("101-AM", MapScreen::AddRun);
    EXPECT_THAT(map.taken, ElementsAre(StartsWith("ArcView|System av.Run(\"CloseStreets\", {True"),
                                       StartsWith("ArcView|System av.Run(\"SolveRun\"")));
    EXPECT_EQ(file("Runs.txt"), "101-AM|AddRun|Start|7:05:00 AM|7:45:00 AM|12:00:00 AM|LARGE|60\n");
    sendRunToMap("103-PM", MapScreen::GroupRunSolve);
    EXPECT_EQ(file("Runs.txt"),
              "103-PM|Group_Run_Solve|End|12:00:00 AM|12:00:00 AM|12:00:00 AM||0\n");
    EXPECT_THAT(dbf::tableIn(file("103-PM.dbf")).rows, IsEmpty());

    const auto unlisted =
        listRunsForMap({"101-AM", "A/B", "gone", "201-PM"}, MapScreen::GroupRunSolve);
    ASSERT_THAT(unlisted, testing::SizeIs(2));
    EXPECT_EQ(unlisted[0].run + "," + unlisted[1].run, "A/B,gone");
    EXPECT_EQ(unlisted[0].fault.number(), base::errors::PathFileAccess);
    EXPECT_THAT(linesOf(file("Runs.txt")),
                ElementsAre(StartsWith("101-AM|"), StartsWith("201-PM|")));
    EXPECT_THAT(file("RunsOld.txt"), StartsWith("103-PM|"));
}

TEST_F(HandOverTest, AFailureAtAnyStepLeavesAllAsItWasAndTheRunToBeResolved) {
    write("Runs.txt", "before\n");
    write("RunsOld.txt", "long before\n");
    write("RunDone.txt", "102-AM\n");
    const auto before = workFiles();
    const auto record = row("SELECT * FROM StartEnd");
    for (const int step : {0, 1, 2}) {
        const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
        std::filesystem::last_write_time(district.progPath() + "RunDone.txt", longAgo);
        sql("UPDATE RUN SET REGENERATE = 0 WHERE RUN = '101-AM'");
        map.failsAt = step;
        map.taken.clear();
        EXPECT_THROW(sendRunToMap("101-AM", MapScreen::Run), base::RunTimeError) << step;
        EXPECT_EQ(workFiles(), before) << step;
        EXPECT_EQ(row("SELECT * FROM StartEnd"), record) << step;
        EXPECT_EQ(storedRun("REGENERATE"), "True") << step;
    }
    map.taken.clear();
    sql("DELETE FROM StartEnd");
    EXPECT_THROW(sendRunToMap("101-AM", MapScreen::Run), base::RunTimeError);
    EXPECT_EQ(row("SELECT * FROM StartEnd"), "no row");
    map.failsAt = -1;
    map.taken.clear();
    sendRunToMap("101-AM", MapScreen::Run);
    EXPECT_EQ(row("SELECT Run, VehCapacity FROM StartEnd"), "101-AM|74");
}

TEST_F(HandOverTest, OddDataAreNamedOrTaken) {
    sql("UPDATE STOP SET YPOS = 1e30 WHERE STOPID = 'S3'");
    try {
        sendRunToMap("101-AM", MapScreen::Run);
        ADD_FAILURE();
    } catch (const base::RunTimeError& fault) {
        EXPECT_THAT(handOverFailedText(fault),
                    testing::AllOf(StartsWith("The stop S3 has 1e+30 in YPOS, which no map can"),
                                   testing::HasSubstr("marked to be resolved")));
    }
    sql("UPDATE RUN SET VEHTYPE = 'O''NEIL' WHERE RUN = '102-AM'");
    sql("UPDATE STOP SET YPOS = 0");
    sendRunToMap("102-AM", MapScreen::Run);
    EXPECT_EQ(row("SELECT VehType, VehCapacity FROM StartEnd"), "O'NEIL|0");
}

TEST_F(HandOverTest, ARunAtWorkIsLeftAloneUntilItsFilesAreGone) {
    write("101-am.DBF", "");
    write("101-AMstops.txt", "");
    EXPECT_THROW(sendRunToMap("101-AM", MapScreen::AddRun), StillProcessing);
    EXPECT_THAT(map.taken, IsEmpty());
    EXPECT_EQ(file("Error.txt"), "");
    {
        const files::Hold held(district.progPath() + "101-AM.dbf");
        EXPECT_FALSE(deleteMapFiles("101-AM"));
        EXPECT_THAT(workFiles(), UnorderedElementsAre(Key("101-am.DBF")));
    }
    EXPECT_TRUE(deleteMapFiles("101-AM"));
    EXPECT_NO_THROW(sendRunToMap("101-AM", MapScreen::AddRun));
}

TEST_F(HandOverTest, AFaultIsLoggedAndRaisedForTheFormToTell) {
    map.failsAt = 0;
    EXPECT_THROW(sendRunToMap("101-AM", MapScreen::AddRun), base::RunTimeError);
    EXPECT_THAT(file("Error.txt"),
                testing::AllOf(testing::HasSubstr("Error Number   : 282\n"),
                               testing::HasSubstr("ExitAddRun of Module: Add_Remove_Stops.")));
    EXPECT_THROW(sendRunToMap("no such run", MapScreen::Run), base::RunTimeError);
    EXPECT_THAT(file("Error.txt"), testing::HasSubstr("The run \"no such run\" is not in the"));
    EXPECT_THAT(session.boxes.shown, IsEmpty());
    EXPECT_TRUE(startup::gErrHandler->DisplayMsgOnError());
    write("Error.txt", "");
    startup::gErrorHandling = false;
    EXPECT_THROW(sendRunToMap("no such run", MapScreen::Run), base::RunTimeError);
    EXPECT_EQ(file("Error.txt"), "");
}

TEST_F(HandOverTest, AFolderThatTakesNoFilesIsToldAndWithoutAnExchangeNothingIsDone) {
    const std::string folder = std::exchange(startup::gProgPath, "/proc/");
    EXPECT_THROW(sendRunToMap("101-AM", MapScreen::Run), base::RunTimeError);
    startup::gProgPath = folder;
    {
        const FullDisk full;
        EXPECT_THROW(sendRunToMap("101-AM", MapScreen::Run), base::RunTimeError);
    }
    startup::gMapSoftware = "arcview3.2";
    EXPECT_FALSE(mapExchangeOn());
    sendRunToMap("101-AM", MapScreen::Run);
    listRunsForMap({"101-AM"}, MapScreen::Run);
    EXPECT_THAT(workFiles(), IsEmpty());
    EXPECT_THAT(map.taken, IsEmpty());
}

TEST_F(HandOverTest, ProgramsThatHandOverAtOnceDoNotMix) {
    constexpr std::array Runs{"101-AM", "102-AM", "101-AM"};
    constexpr int Rounds = 15;
    std::atomic<int> sent = 0;
    std::atomic<int> busy = 0;
    const auto program = [&](std::size_t number) {
        const auto routing = startup::GetJetConnection(district.path(DatabaseFile::Routing));
        const WorkFiles files(district.progPath());
        for (int round = 0; round < Rounds; ++round) {
            const MapRun run{.run = Runs[number]};
            const double seats = 100.0 * round + static_cast<double>(number);
            FakeMap own([&] {  // what it finds is what it is asked for
                const auto request = lineText(requestFor(run, "Run", seats)) + "\n";
                EXPECT_EQ(files.contentsOf("Runs.txt"), request);
                EXPECT_EQ(files.contentsOf("RunsOrg.txt"), request);
                EXPECT_EQ(support::rowsOf("SELECT Run, VehCapacity FROM StartEnd", *routing)[0],
                          run.run + "|" + base::numberText(seats));
            });
            try {
                handOver({*routing, files, own, MapScreen::Run, run, seats});
                ++sent;
                files.deleteRun(run.run);
            } catch (const StillProcessing&) {
                ++busy;
            }
        }
    };
    {
        const std::jthread second(program, 1);
        const std::jthread third(program, 2);
        program(0);
    }
    EXPECT_EQ(sent + busy, 3 * Rounds);
    EXPECT_GE(sent, 2 * Rounds);
}

// They share no lock but the database's.
TEST_F(HandOverTest, TwoProgramFoldersThatFindNoRecordMakeOne) {
    constexpr int Rounds = 600;
    std::atomic<int> twice = 0;
    const auto program = [&](const char* run) {
        const auto routing = startup::GetJetConnection(district.path(DatabaseFile::Routing));
        for (int round = 0; round < Rounds; ++round) {
            routing->Execute("DELETE FROM StartEnd");
            Set_StartorEnd(*routing, {.run = run}, 10, "YES");
            twice += support::rowsOf("SELECT Run FROM StartEnd", *routing).size() > 1 ? 1 : 0;
        }
    };
    {
        const std::jthread second(program, "102-AM");
        program("101-AM");
    }
    EXPECT_EQ(twice, 0);
}

}  // namespace
