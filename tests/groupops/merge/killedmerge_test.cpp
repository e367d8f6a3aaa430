#include <random>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "../groupsupport.h"
#include "groupops/merge/runmerge.h"
#include "tools/district/check/checks.h"
#include "tools/district/make/madedistrict.h"

namespace groupops {
namespace {

using data::DatabaseFile;
using tools::district::MadeDistrict;

/// A program of its own that merges `source` into `receiving`, over and over to and fro or once;
/// never returns.
pid_t mergeElsewhere(const MadeDistrict& district, RunMerge merge, bool forever) {
    const pid_t child = fork();
    if (child != 0) {
        return child;
    }
    int result = 0;
    try {
        ado::Connection routing;
        routing.Open(district.folders().database(DatabaseFile::Routing).string());
        support::FakeProgress progress;
        do {
            mergeRuns(routing, merge, progress);
            std::swap(merge.source, merge.receiving);
        } while (forever);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        result = 1;
    }
    _exit(result);
}

std::string faultsOf(const MadeDistrict& district) {
    tools::district::Progress progress;
    const auto report = tools::district::checkDistrict(district.folders(), progress);
    return report.findings.empty() ? "" : report.text();
}

constexpr auto Logged = "SELECT COUNT(*) FROM RUNLOG WHERE User = 'KILLED'";
/// Every stop carries the sequence that its last log row tells.
constexpr auto NotAsLogged =
    "SELECT COUNT(*) FROM (SELECT t.RUN AS run, t.RUNSEQ AS seq, (SELECT l.RUNID || ' ' || "
    "l.Description FROM RUNLOG l WHERE l.User = 'KILLED' AND l.StopID = s.STOPID ORDER BY l.ID "
    "DESC LIMIT 1) AS last FROM STOP_TRIPTYPE t JOIN STOP s ON s.INT_STOPID = t.INT_STOPID WHERE "
    "t.RUN IN ('101-1', '102-1') AND s.STOPTYPE = 'REGULAR') WHERE last NOT LIKE run || ' %' OR "
    "last NOT LIKE '%sequence of: ' || seq";

}  // namespace

TEST(MergeKilled, LeavesEveryStopWithItsLogRow) {
    const MadeDistrict district;
    district.execute(DatabaseFile::Routing,
                     "UPDATE STOP_TRIPTYPE SET RUN = '102-1', RUNSEQ = 1000 + ID WHERE ID IN "
                     "(SELECT ID FROM STOP_TRIPTYPE WHERE RUN LIKE '11_-_' LIMIT 80)");
    const RunMerge merge{"101-1", "102-1", "KILLED"};
    waitpid(mergeElsewhere(district, merge, false), nullptr, 0);
    waitpid(mergeElsewhere(district, {merge.source, merge.receiving, merge.user}, false), nullptr,
            0);
    std::minstd_rand random(11);
    std::int64_t logged = 0;
    for (int round = 0; round < 20; ++round) {
        const pid_t child = mergeElsewhere(district, merge, true);
        usleep(static_cast<unsigned>(1000 + random() % 60'000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        EXPECT_EQ(district.number(NotAsLogged), 0);
        EXPECT_EQ(faultsOf(district), "");
        EXPECT_GE(district.number(Logged), logged);
        logged = district.number(Logged);
    }
    EXPECT_GT(logged, 0);
}

// Both into one run, and one of them from a run that the other empties.
TEST(MergeTwice, AtOnceEndsInBothProgramsWithoutASequenceTwice) {
    const MadeDistrict district;
    const auto countOn = [&](const std::string& runs) {
        return district.number("SELECT COUNT(*) FROM STOP_TRIPTYPE WHERE RUN IN (" + runs + ")");
    };
    const auto before = countOn("'101-1', '102-1', '103-1'");
    for (const auto* source : {"102-1", "103-1"}) {
        std::vector<pid_t> programs;
        for (int i = 0; i < 2; ++i) {
            const std::string from = i == 0 ? source : "102-1";
            programs.push_back(mergeElsewhere(district, {"101-1", from, "TWICE"}, false));
        }
        for (const pid_t program : programs) {
            int status = 0;
            waitpid(program, &status, 0);
            EXPECT_EQ(status, 0);
        }
    }
    EXPECT_EQ(countOn("'101-1'"), before);
    EXPECT_EQ(faultsOf(district), "");
}

}  // namespace groupops
