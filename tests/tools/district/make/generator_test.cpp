#include "tools/district/make/generator.h"

#include <gtest/gtest.h>

#include "support/temporaryfolder.h"
#include "tools/district/check/checks.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

std::string checked(const MadeDistrict& made) {
    Progress progress;
    const CheckReport report = checkDistrict(made.folders(), progress);
    return report.findings.empty() ? "" : report.text();
}

std::string bytesOf(const MadeDistrict& made, data::DatabaseFile file) {
    return support::contentsOf(made.folders().database(file).string());
}

}  // namespace

TEST(Generator, KeepsTheRatiosOfARealDistrict) {
    const MadeDistrict made(200);
    const Sizes sizes = Sizes::forRuns(200);
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM RUN"), sizes.runs);
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM STOP"), sizes.stops);
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM STOP_TRIPTYPE"), sizes.stopTrips);
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM STUDENT"), sizes.students);
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM RUNLOG"), sizes.logEntries);
    EXPECT_EQ(made.number("SELECT COUNT(*) FROM ROUTE"), sizes.routes);
    // No more runs at one bell of one school than a bell time change can hold.
    EXPECT_EQ(made.number("SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM RUN"
                          " GROUP BY SCHOOL, BELLTIME)"),
              30);
    EXPECT_EQ(checked(made), "");
}

TEST(Generator, MakesSoundDistrictsOfAnySize) {
    for (const std::int64_t runs : {1, 2, 3, 59, 61}) {
        EXPECT_EQ(checked(MadeDistrict(runs, 5)), "") << runs;
    }
}

TEST(Generator, TheSameSeedMakesTheSameFiles) {
    const MadeDistrict one(30, 7);
    const MadeDistrict again(30, 7);
    const MadeDistrict other(30, 8);
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        EXPECT_EQ(bytesOf(one, file), bytesOf(again, file)) << data::fileName(file);
    }
    EXPECT_NE(bytesOf(one, data::DatabaseFile::Routing),
              bytesOf(other, data::DatabaseFile::Routing));
}

}  // namespace tools::district
