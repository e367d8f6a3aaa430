#include "groupops/groupsolve/Group_Run_Solve.h"

#include <QProgressBar>
#include <QTest>
#include <QTimer>

#include "../../runedit/map/fakemap.h"
#include "../../runedit/map/mapsession.h"
#include "../groupsupport.h"
#include "groupops/base/grouploop.h"
#include "platform/dde/dbustransport.h"
#include "platform/forms/timer.h"
#include "runedit/map/requestline.h"
#include "support/formtest.h"
#include "support/privatebus.h"

namespace {

using namespace std::chrono_literals;
using groupops::Group_Run_Solve;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class GroupSolveForm : public support::FormTest<MapSession> {
protected:
    GroupSolveForm() {
        forms::Timer::setSpeed(200);
        selection.selected = {"101-AM", "102-AM", "201-PM"};
        map.whenTaken = [this] { answerSoon(); };
    }
    ~GroupSolveForm() override {
        forms::Timer::setSpeed(1);
        groupops::GroupLoop::setPatience(std::chrono::minutes(1));
    }

    Group_Run_Solve& form() override { return loaded<Group_Run_Solve>(selection); }
    void solve() { form().ChangeIt_Click(); }
    static void later(std::function<void()> task) { QTimer::singleShot(20, std::move(task)); }
    /// The map's side: the answer, and the end of the run's file.
    void answerSoon() {
        later([this] {
            ++answers;
            write("RunDone.txt", "");
            runedit::deleteMapFiles(sentRun());
        });
    }
    /// The run of the request list, which must be about one.
    std::string sentRun() {
        const std::string list = file("Runs.txt");
        EXPECT_THAT(runedit::linesOf(list), SizeIs(1));
        return std::string(runedit::runOfLine(list));
    }
    std::vector<std::string> states() {
        const int count = list("RunStates").rows();
        std::vector<std::string> rows;
        rows.reserve(count);
        for (int i = 0; i < count; ++i) {
            rows.push_back(Controls::row("RunStates", i));
        }
        return rows;
    }
    std::string onlyBox() {
        EXPECT_THAT(session.boxes.shown, SizeIs(1));
        auto shown = std::exchange(session.boxes.shown, {});
        return shown.empty() ? "" : shown.back().text;
    }
    std::string program(const char* name) { return district.progPath() + name; }

    FakeMap map;
    support::FakeSelection selection;
    std::size_t answers = 0;
};

TEST_F(GroupSolveForm, SendsEachRunWhenTheAnswerToTheOneBeforeIsThere) {
    write("runs.txt", "before\n");
    write("RunDone.txt", "102-AM");
    session.processes.running = {"DelWrkFiles.exe"};
    later([this] {
        EXPECT_THAT(runedit::linesOf(file("Runs.txt")),
                    ElementsAre(StartsWith("101-AM|Group_Run_Solve|Start|7:05:00 AM|"),
                                StartsWith("102-AM|"), StartsWith("201-PM|")));
        EXPECT_EQ(file("RunsOld.txt"), "before\n");
        EXPECT_EQ(text("StatMsg"), "Preparing for Group Run Solve...");
        EXPECT_THAT(map.taken, IsEmpty());
        session.processes.running.clear();
    });
    std::vector<int> percents;
    map.whenTaken = [&] {
        EXPECT_EQ(answers + 1, map.taken.size());
        EXPECT_FALSE(files::exists(program("RunDone.txt")));
        EXPECT_EQ(file("RunsOrg.txt"), file("Runs.txt"));
        EXPECT_EQ(text("StatMsg"), "Changed information for run: " + sentRun() + ".");
        EXPECT_THAT(MapSession::row("SELECT Run, UpdateMap FROM StartEnd"), sentRun() + "|True");
        percents.push_back(control<QProgressBar>("ProgressBar1").value());
        answerSoon();
    };
    solve();

    EXPECT_THAT(map.taken, ElementsAre(HasSubstr("runstop.avl\", \"101-AM\""),
                                       HasSubstr("runstop.avl\", \"102-AM\""),
                                       HasSubstr("runstop.avl\", \"201-PM\"")));
    EXPECT_THAT(percents, ElementsAre(0, 33, 67));
    EXPECT_THAT(states(), ElementsAre("101-AM|Solved", "102-AM|Solved", "201-PM|Solved"));
    EXPECT_EQ(text("StatMsg"), "3 of 3 runs solved.");
    EXPECT_THAT(session.processes.started,
                ElementsAre(program("DelWrkFiles.exe"), program("Process_RunWork.exe")));
    EXPECT_THAT(session.boxes.shown, IsEmpty());
    EXPECT_EQ(selection.searches, 1);
    EXPECT_THAT(file("log.txt"),
                HasSubstr("In Group_Run_Solve, in Timer2 performed Command1_Click and about to"));
}

TEST_F(GroupSolveForm, ARunWithAFaultOfItsOwnIsLeftOut) {
    sql("INSERT INTO RUN(RUN) VALUES ('A/B')");
    selection.selected = {"101-AM", "gone", "A/B", "102-AM", "201-PM"};
    write("101-AM.dbf", "");
    map.failsAt = 1;
    map.failure = dde::errors::Refused;
    solve();

    ASSERT_THAT(session.boxes.shown, SizeIs(2));
    EXPECT_EQ(session.boxes.shown[0].title, runedit::MapStillProcessingTitle);
    EXPECT_EQ(session.boxes.shown[0].text, runedit::MapStillProcessingText);
    EXPECT_THAT(session.boxes.shown[1].text,
                AllOf(StartsWith("0 of 5 runs solved."),
                      HasSubstr("not finished with them: 101-AM."), HasSubstr("meanwhile: gone."),
                      HasSubstr("files cannot be named after it"), HasSubstr("201-PM (ArcView")));
    EXPECT_EQ(session.processes.started.back(), program("Process_RunWork.exe"));
    EXPECT_FALSE(isShown("LeaveOutSolved"));

    map.failsAt = -1;
    map.whenTaken = [this] {
        sql("DELETE FROM RUN WHERE RUN = '201-PM'");
        answerSoon();
    };
    solve();
    EXPECT_THAT(states(),
                testing::IsSupersetOf({"102-AM|Solved", "201-PM|Left out: deleted meanwhile"}));
}

TEST_F(GroupSolveForm, WithoutTheMapNothingIsWrittenAndTheRestCanGoLater) {
    map.failsAt = 0;
    solve();
    EXPECT_THAT(onlyBox(), AllOf(StartsWith("0 of 3 runs solved.\n\nArcView is not running."),
                                 HasSubstr("Not sent: 101-AM, 102-AM, 201-PM.")));
    EXPECT_THAT(workFiles(), IsEmpty());
    EXPECT_THAT(session.processes.started, IsEmpty());
    EXPECT_EQ(selection.searches, 0);

    map.failsAt = 2;
    solve();
    EXPECT_THAT(onlyBox(), AllOf(StartsWith("1 of 3 runs solved.\n\nArcView is not running."),
                                 HasSubstr("Not sent: 102-AM, 201-PM.")));
    EXPECT_EQ(session.processes.started.back(), program("Process_RunWork.exe"));
    EXPECT_TRUE(isShown("LeaveOutSolved"));

    map.failsAt = -1;
    map.taken.clear();
    solve();
    EXPECT_EQ(text("StatMsg"), "2 of 2 runs solved.");
    EXPECT_THAT(map.taken, SizeIs(2));
    EXPECT_FALSE(isShown("LeaveOutSolved"));
    EXPECT_TRUE(isEnabled("ChangeIt"));
}

TEST_F(GroupSolveForm, AMapThatEndsOrStaysSilentDoesNotHoldTheForm) {
    map.whenTaken = [this] { map.there = false; };
    solve();
    EXPECT_THAT(onlyBox(), AllOf(HasSubstr("has ended without an answer."),
                                 HasSubstr("the answer has not come: 101-AM."),
                                 HasSubstr("Not sent: 102-AM, 201-PM.")));
    EXPECT_TRUE(startup::RefreshRunList);

    map.there = true;
    map.whenTaken = [] {};
    session.boxes.answers = {base::MsgAnswer::Yes, base::MsgAnswer::No};
    runedit::deleteMapFiles("101-AM");
    forms::Timer::setSpeed(5000);
    solve();
    ASSERT_THAT(session.boxes.shown, SizeIs(3));
    EXPECT_THAT(session.boxes.shown[1].text, HasSubstr("answer to run 101-AM for 5 minutes"));
    EXPECT_THAT(session.boxes.shown[2].text, HasSubstr("You stopped the group run solve."));
    EXPECT_THAT(map.taken, SizeIs(2));
}

TEST_F(GroupSolveForm, EscapeEndsTheCleanUpAtOnceAndARunWhenItIsDone) {
    form().showForm();
    const auto stop = [this] {
        EXPECT_FALSE(form().closeForm());
        QTest::keyClick(&form(), Qt::Key_Escape);
    };
    session.processes.running = {"DelWrkFiles.exe"};
    later(stop);
    solve();
    EXPECT_THAT(onlyBox(), HasSubstr("Not sent: 101-AM, 102-AM, 201-PM."));
    EXPECT_THAT(session.processes.started, SizeIs(1));

    session.processes.running.clear();
    map.whenTaken = [&] {
        answerSoon();
        later(stop);
    };
    solve();
    EXPECT_THAT(onlyBox(),
                AllOf(StartsWith("1 of 3 runs solved.\n\nYou stopped"), Not(HasSubstr("Sent,"))));

    map.whenTaken = [&] {
        later(stop);
        later(stop);
    };
    solve();
    EXPECT_THAT(onlyBox(), AllOf(StartsWith("0 of 2 runs solved.\n\nYou stopped"),
                                 HasSubstr("the answer has not come: 102-AM."),
                                 HasSubstr("Not sent: 201-PM.")));
    EXPECT_EQ(text("StopIt"), "&Stop");
    EXPECT_FALSE(form().isBusy());
}

// Held from before the second run is sent until the planner, asked, has it stop or go on.
TEST_F(GroupSolveForm, WaitsForAnotherProgramLeavesNoRunOutAndAsksInItsOwnWords) {
    std::shared_ptr<void> held;
    map.whenTaken = [&] {
        held = map.taken.size() == 1 ? heldByOthers() : nullptr;
        answerSoon();
    };
    groupops::GroupLoop::setPatience(0ms);
    session.boxes.answers = {base::MsgAnswer::No};
    solve();
    ASSERT_THAT(session.boxes.shown, SizeIs(2));
    EXPECT_EQ(session.boxes.shown[0].title, "Database in Use");
    EXPECT_THAT(session.boxes.shown[0].text, HasSubstr("1 of 3 runs solved."));
    EXPECT_THAT(session.boxes.shown[1].text,
                AllOf(HasSubstr("You stopped"), HasSubstr("Not sent: 102-AM, 201-PM.")));
    EXPECT_FALSE(ending() || form().isBusy());

    held.reset();
    map.whenTaken = [this] { answerSoon(); };
    groupops::GroupLoop::setPatience(std::chrono::minutes(1));
    held = heldByOthers();
    QTimer::singleShot(300, [&] {
        EXPECT_EQ(text("StatMsg"),
                  "Waiting for another program that is writing to the database...");
        held.reset();
    });
    solve();
    EXPECT_EQ(text("StatMsg"), "2 of 2 runs solved.");
    EXPECT_THAT(session.boxes.shown, SizeIs(2));
}

TEST_F(GroupSolveForm, CompanionsThatAreMissingAreNamed) {
    session.processes.failure = base::errors::FileNotFound;
    session.boxes.answers = {base::MsgAnswer::No};
    solve();
    ASSERT_THAT(session.boxes.shown, SizeIs(2));
    EXPECT_THAT(session.boxes.shown[0].text, HasSubstr("because DelWrkFiles.exe could not"));
    EXPECT_THAT(map.taken, IsEmpty());

    session.boxes.answers = {base::MsgAnswer::Yes};
    solve();
    ASSERT_THAT(session.boxes.shown, SizeIs(4));
    EXPECT_THAT(session.boxes.shown[3].text,
                AllOf(StartsWith("3 of 3 runs solved.\n\n"), HasSubstr("Process_RunWork.exe")));
    EXPECT_EQ(session.forms.unloads, 0);
}

TEST_F(GroupSolveForm, WithoutRunsExchangeOrFolderNothingIsSent) {
    startup::gProgPath = "/proc/";
    solve();
    EXPECT_THAT(onlyBox(), HasSubstr("Path/File access error"));
    startup::gProgPath = district.progPath();

    selection.selected.clear();
    solve();
    EXPECT_THAT(onlyBox(), HasSubstr("no run is selected in the run list."));

    selection.selected = {"101-AM"};
    startup::gMapSoftware = "other";
    solve();
    EXPECT_EQ(text("StatMsg"), runedit::MapExchangeOffText);
    EXPECT_THAT(workFiles(), IsEmpty());
    EXPECT_THAT(session.processes.started, IsEmpty());
    EXPECT_THAT(map.taken, IsEmpty());
}

TEST_F(GroupSolveForm, RealMapSolvesTheRunsOneByOne) {
    const support::PrivateBus bus;
    dde::DBusTransport transport(bus.address(), 2s);
    dde::setTransport(&transport);
    support::ChildProgram program(
        files::programFolder() + "/vireo-map", {"--work", "0.1", "--hold", "0"},
        support::ChildProgram::Variables{{"DBUS_SESSION_BUS_ADDRESS", bus.address()},
                                         {"XDG_CONFIG_HOME", district.folder()}});
    ASSERT_EQ(program.readLine(), "Ready");
    sql("UPDATE STOP SET XPOS = 1000 * INT_STOPID, YPOS = 5280");
    sql("UPDATE RUN SET REGENERATE = 1, STARTTIME = '1899-12-30 07:00:00'");
    solve();
    EXPECT_THAT(session.boxes.shown, IsEmpty());
    EXPECT_EQ(MapSession::row("SELECT COUNT(*) FROM RUN WHERE REGENERATE = FALSE"), "3");
    EXPECT_EQ(MapSession::row("SELECT Run FROM StartEnd"), "201-PM");
}

}  // namespace
