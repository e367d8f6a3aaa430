// Bell changes of a whole school of the sample district: what they move, and what is left of them
// when the program is killed or another one works on the same runs.

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <thread>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "../groupsupport.h"
#include "groupops/belltime/bellchange.h"
#include "tools/district/madedistrict.h"

namespace {

using data::DatabaseFile;
using support::FakeProgress;
using support::rowsOf;

constexpr auto OfSchool = "RUN IN (SELECT RUN FROM RUN WHERE SCHOOL = 'NFES')";

std::vector<std::string> rowsIn(const std::string& path, const std::string& sql) {
    ado::Connection routing;
    routing.Open(path);
    return rowsOf(sql, routing);
}

/// All that a bell change writes to the runs of the school, but for the audit columns.
std::map<std::string, std::string> runsIn(const std::string& path) {
    std::map<std::string, std::string> states;
    const auto add = [&](const std::string& sql) {
        for (const auto& row : rowsIn(path, sql)) {
            states[row.substr(0, row.find('|'))] += row + "\n";
        }
    };
    add("SELECT RUN, BELLTIME, STARTTIME, ENDTIME FROM RUN WHERE SCHOOL='NFES'");
    add(fmt::format("SELECT RUN, TIME_AT_STOP FROM STOP_TRIPTYPE WHERE {} ORDER BY RUN, RUNSEQ",
                    OfSchool));
    return states;
}

/// Moves the bells of the school as they are now.
groupops::GroupOutcome moveBells(ado::Connection& routing, int minutes,
                                 base::ProgressPort& progress) {
    groupops::BellGroups groups;
    readBellGroups(routing, "SELECT RUN.* FROM RUN WHERE RUN.SCHOOL='NFES'", groups);
    groupops::BellChange change{groups, {}, {.fromEnd = true}};
    for (int group = 1; group <= groups.count(); ++group) {
        const auto bell = base::Date::parse(groups[group].bellTime);
        change.newBells.emplace_back(bell->plusSeconds(std::int64_t{minutes} * 60));
    }
    FakeProgress quiet;
    return changeBellTimes(routing, change, {quiet, progress, {}});
}

groupops::GroupOutcome moveBells(const std::string& path, int minutes) {
    ado::Connection routing;
    routing.Open(path);
    FakeProgress progress;
    return moveBells(routing, minutes, progress);
}

/// The gaps that are kept are whole minutes. The runs of the sample end at odd seconds: a first
/// change rounds them off.
class SchoolTest : public testing::Test {
protected:
    SchoolTest() { moveBells(path(), 5); }
    [[nodiscard]] std::string path() const {
        return made.folders().database(DatabaseFile::Routing).string();
    }
    tools::district::MadeDistrict made;
};

TEST_F(SchoolTest, FifteenMinutesMoveEveryStopByThatAndNothingElse) {
    const auto everything = [&] {
        std::map<std::string, std::vector<std::string>> tables;
        for (const auto* table : {"RUN", "STOP_TRIPTYPE", "STOP", "ROUTE", "RUNDIR", "RUNWARNING",
                                  "RUNLOG", "SYSTEM", "StartEnd"}) {
            tables[table] = rowsIn(path(), fmt::format("SELECT * FROM {}", table));
        }
        return tables;
    };
    made.execute(DatabaseFile::Routing, "UPDATE RUN SET changeddt = NULL, ChangedBy = NULL");
    const auto before = everything();

    const auto outcome = moveBells(path(), 15);
    EXPECT_GT(outcome.changed, 10);
    EXPECT_EQ(made.number("SELECT count(*) FROM RUN WHERE ChangedBy = 'BELL TIME CHANGE'"),
              outcome.changed);
    ASSERT_TRUE(everything() != before);

    const auto back = [&](const char* column) {
        return fmt::format("{0} = datetime({0}, '-15 minutes')", column);
    };
    made.execute(DatabaseFile::Routing, fmt::format("UPDATE STOP_TRIPTYPE SET {} WHERE {}",
                                                    back("TIME_AT_STOP"), OfSchool));
    made.execute(DatabaseFile::Routing,
                 fmt::format("UPDATE RUN SET {}, {}, {}, changeddt = NULL, ChangedBy = NULL WHERE "
                             "SCHOOL = 'NFES'",
                             back("BELLTIME"), back("STARTTIME"), back("ENDTIME")));
    for (const auto& [table, rows] : everything()) {
        EXPECT_TRUE(rows == before.at(table)) << table;
    }
}

TEST(School, TheFirstChangeRoundsTheGapToWholeMinutesAndKeepsTheLengthOfTheRuns) {
    const tools::district::MadeDistrict made;
    const auto number = [&](const char* sql) {
        return made.number(std::string(sql) + " FROM RUN WHERE SCHOOL = 'NFES'");
    };
    constexpr auto OddGaps =
        "SELECT sum((strftime('%s', BELLTIME) - strftime('%s', ENDTIME)) % 60 <> 0)";
    constexpr auto Length = "SELECT sum(strftime('%s', ENDTIME) - strftime('%s', STARTTIME))";
    const auto lengthBefore = number(Length);
    EXPECT_GT(number(OddGaps), 0);
    moveBells(made.folders().database(DatabaseFile::Routing).string(), 15);
    EXPECT_EQ(number(OddGaps), 0);
    EXPECT_EQ(number(Length), lengthBefore);
}

/// Runs in a process of its own, which ends with what `body` returns.
pid_t inAnotherProgram(const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(body());
    }
    return child;
}

int exitCodeOf(pid_t program) {
    int status = 0;
    waitpid(program, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Tells through a pipe when the second run is about to be changed.
class TellingProgress : public FakeProgress {
public:
    explicit TellingProgress(int pipe) : pipe_(pipe) {}
    bool yield() override {
        if (++turns == 2) {
            [[maybe_unused]] const auto written = write(pipe_, "x", 1);
        }
        return false;
    }

private:
    int pipe_;
};

TEST_F(SchoolTest, KilledAtAnyMomentEveryRunIsAsBeforeOrAsAfter) {
    const auto copy = path() + ".copy";
    std::filesystem::copy_file(path(), copy);
    const auto before = runsIn(path());
    moveBells(path(), 15);
    const auto after = runsIn(path());

    int mixed = 0;
    for (int kill = 0; kill < 20; ++kill) {
        const auto file = fmt::format("{}{}", copy, kill);
        std::filesystem::copy_file(copy, file);
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t program = inAnotherProgram([&] {
            ado::Connection routing;
            routing.Open(file);
            for (int minutes = 15;; minutes = -minutes) {
                TellingProgress progress(ends[1]);
                moveBells(routing, minutes, progress);
            }
            return 0;
        });
        char told = 0;
        ASSERT_EQ(read(ends[0], &told, 1), 1);
        std::this_thread::sleep_for(std::chrono::microseconds(350 * kill));
        ::kill(program, SIGKILL);
        exitCodeOf(program);
        close(ends[0]);
        close(ends[1]);

        int changed = 0;
        for (const auto& [run, state] : runsIn(file)) {
            EXPECT_TRUE(state == before.at(run) || state == after.at(run)) << state;
            changed += state == after.at(run) ? 1 : 0;
        }
        mixed += changed > 0 && changed < std::ssize(before) ? 1 : 0;
    }
    EXPECT_GT(mixed, 0) << "no kill came in the middle";
}

TEST_F(SchoolTest, TwoProgramsOnTheSameRunsBothEndAndLeaveNoRunHalfWritten) {
    moveBells(path(), 15);
    const auto one = runsIn(path());
    moveBells(path(), 15);
    const auto two = runsIn(path());
    moveBells(path(), -30);

    const auto change = [&](int minutes) {
        return inAnotherProgram([this, minutes] {
            const auto outcome = moveBells(path(), minutes);
            return outcome.changed == outcome.asked ? 0 : 1;
        });
    };
    const pid_t first = change(15);
    const pid_t second = change(30);
    EXPECT_EQ(exitCodeOf(first), 0);
    EXPECT_EQ(exitCodeOf(second), 0);
    for (const auto& [run, state] : runsIn(path())) {
        EXPECT_TRUE(state == one.at(run) || state == two.at(run)) << state;
    }
}

}  // namespace
