// Bell changes of a whole school of the sample district, and all that they move.

#include <map>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "../groupsupport.h"
#include "groupops/belltime/bellchange.h"
#include "support/rows.h"
#include "tools/district/make/madedistrict.h"

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

/// Moves the bells of the school as they are now.
groupops::Outcome moveBells(const std::string& path, int minutes) {
    ado::Connection routing;
    routing.Open(path);
    groupops::BellGroups groups;
    readBellGroups(routing, "SELECT RUN.* FROM RUN WHERE RUN.SCHOOL='NFES'", groups);
    groupops::BellChange change{groups, {}, {.fromEnd = true}};
    for (int group = 1; group <= groups.count(); ++group) {
        const auto bell = base::Date::parse(groups[group].bellTime);
        change.newBells.emplace_back(bell->plusSeconds(std::int64_t{minutes} * 60));
    }
    FakeProgress quiet;
    return changeBellTimes(routing, change, {quiet, [](double) {}});
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
    EXPECT_GT(outcome.done, 10);
    EXPECT_EQ(made.number("SELECT count(*) FROM RUN WHERE ChangedBy = 'BELL TIME CHANGE'"),
              outcome.done);
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

}  // namespace
