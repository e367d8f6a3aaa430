// Bell changes of a whole school of the sample district, and all that they move.

#include <algorithm>
#include <cstdint>
#include <map>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "../groupsupport.h"
#include "groupops/belltime/bellforecast.h"
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

/// Every run of the district, by each method, gets the times that were foretold.
TEST(School, TheForecastIsWhatIsWritten) {
    const tools::district::MadeDistrict made;
    ado::Connection routing;
    routing.Open(made.folders().database(DatabaseFile::Routing).string());
    using Gap = groupops::BellMethod::Gap;
    for (const auto& method :
         {groupops::BellMethod{Gap::FixedMinutes, 10, false},
          groupops::BellMethod{Gap::Same, 0, true}, groupops::BellMethod{Gap::Same, 0, false}}) {
        groupops::BellGroups groups;
        readBellGroups(routing, "SELECT RUN.* FROM RUN WHERE RUN.SCHOOL<>'NFES'", groups);
        groupops::BellChange change{groups, {}, method};
        for (int group = 1; group <= groups.count(); ++group) {
            const auto bell = base::Date::parse(groups[group].bellTime);
            change.newBells.push_back(
                bell ? std::optional(bell->plusSeconds(group % 3 * std::int64_t{300}))
                     : std::nullopt);
        }
        std::vector<std::string> foretold;
        for (const auto& group : groupops::BellForecaster(routing, groups).forecast(change)) {
            for (const auto& run : group.runs) {
                const bool left = run.verdict == groupops::RunForecast::Verdict::LeftOut;
                const auto& times = left ? run.now : run.after;
                foretold.push_back(run.run + "|" + times.start->timeValue().text() + "|" +
                                   times.end->timeValue().text());
            }
        }
        FakeProgress quiet;
        const auto outcome = changeBellTimes(routing, change, {quiet, [](double) {}});
        EXPECT_GT(outcome.done, 50);
        std::ranges::sort(foretold);
        auto written = rowsOf(
            "SELECT RUN, STARTTIME, ENDTIME FROM RUN WHERE RUN.SCHOOL<>'NFES' "
            "AND RUN.BELLTIME Is Not Null",
            routing);
        std::ranges::sort(written);
        EXPECT_EQ(foretold, written);
    }
}

}  // namespace
