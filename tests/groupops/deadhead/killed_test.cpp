#include <random>
#include <set>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "groupops/deadhead/districtdeadhead.h"
#include "groupops/fakeprogress.h"
#include "tools/district/checks.h"
#include "tools/district/madedistrict.h"

namespace groupops {
namespace {

using data::DatabaseFile;
using tools::district::MadeDistrict;

/// A program of its own that calculates the district over and over, or once; never returns.
pid_t calculateElsewhere(const MadeDistrict& district, bool reset, bool forever) {
    const pid_t child = fork();
    if (child != 0) {
        return child;
    }
    int result = 0;
    try {
        ado::Connection routing;
        ado::Connection cross;
        routing.Open(district.folders().database(DatabaseFile::Routing).string());
        cross.Open(district.folders().database(DatabaseFile::DeadCross).string());
        FakeProgress progress;
        do {
            calculateAllRoutes({routing, cross}, reset, progress);
        } while (forever);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        result = 1;
    }
    _exit(result);
}

/// Routes with runs of which some have their values and some have not, or whose mark is not theirs.
constexpr auto HalfRoutes =
    "SELECT COUNT(*) FROM (SELECT r.DEADERROR AS mark, "
    "MIN(MIN(u.DEADHEAD_BEFORE_TIME, u.DEADHEAD_AFTER_TIME)) AS low, "
    "MAX(u.DEADHEAD_BEFORE_TIME) AS high FROM ROUTE r JOIN RUN u ON u.INT_ROUTEID = r.INT_ROUTEID "
    "GROUP BY r.INT_ROUTEID) WHERE (low = -2) <> (high = -2) OR (low >= 0) = mark";
constexpr auto NotCalculated =
    "SELECT COUNT(*) FROM RUN WHERE INT_ROUTEID > 0 AND DEADHEAD_BEFORE_TIME = -2";

std::string faults(const MadeDistrict& district) {
    tools::district::Progress progress;
    const auto report = tools::district::checkDistrict(district.folders(), progress);
    return report.findings.empty() ? "" : report.text();
}

}  // namespace

TEST(DeadHeadKilled, LeavesEveryRouteWhollyBeforeOrWhollyAfter) {
    const MadeDistrict district(300);
    std::minstd_rand random(7);
    std::set<std::int64_t> calculated;
    for (int round = 0; round < 12; ++round) {
        const pid_t child = calculateElsewhere(district, true, true);
        usleep(static_cast<unsigned>(1000 + random() % 40'000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        EXPECT_EQ(district.number(HalfRoutes), 0);
        EXPECT_EQ(faults(district), "");
        calculated.insert(district.number("SELECT COUNT(*) FROM ROUTE WHERE DEADERROR = 0"));
    }
    EXPECT_GT(calculated.size(), 3U) << "the kills came too early or too late to tell anything";
}

TEST(DeadHeadTwice, AtOnceEndsInBothPrograms) {
    const MadeDistrict district(1000);
    std::vector<pid_t> programs;
    for (int i = 0; i < 2; ++i) {
        programs.push_back(calculateElsewhere(district, i == 0, false));
    }
    for (const pid_t program : programs) {
        int status = 0;
        waitpid(program, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(district.number(HalfRoutes), 0);
    EXPECT_EQ(district.number(NotCalculated), 0);
    EXPECT_EQ(faults(district), "");
}

}  // namespace groupops
