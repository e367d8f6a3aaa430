#include "tools/district/export/runfeed.h"

#include <gmock/gmock.h>

#include "platform/base/error.h"
#include "platform/ini/ini.h"
#include "support/errors.h"
#include "tools/district/make/madedistrict.h"
#include "tools/district/place/centre.h"

namespace tools::district {

namespace {

using data::DatabaseFile;
using testing::Pair;
using testing::UnorderedElementsAre;

TEST(RunFeed, KeepsTheRulesOfFeedsAndTellsOfRunsThatCannot) {
    const MadeDistrict made(40);
    const auto change = [&](const std::string& sql) { made.execute(DatabaseFile::Routing, sql); };
    change(
        "UPDATE RUN SET ACTIVE = 1, monday = RUN <> 'A000001', tuesday = 1, wednesday = 1,"
        " thursday = 1, friday = 1");
    change(
        "UPDATE RUN SET monday = 0, tuesday = 0, wednesday = 0, thursday = 0, friday = 0"
        " WHERE RUN = 'A000002'");
    change(
        "UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = NULL WHERE RUN = 'A000003' AND RUNSEQ ="
        " (SELECT MIN(RUNSEQ) FROM STOP_TRIPTYPE WHERE RUN = 'A000003')");
    change(
        "UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = '1899-12-30 05:00:00' WHERE RUN = 'A000004'"
        " AND RUNSEQ = (SELECT MAX(RUNSEQ) FROM STOP_TRIPTYPE WHERE RUN = 'A000004')");
    change("UPDATE STOP_TRIPTYPE SET RUN = 'a000005', LOAD_TIME = 90 WHERE RUN = 'A000005'");
    change(
        "UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = NULL WHERE RUN = 'A000006' AND RUNSEQ ="
        " (SELECT MIN(RUNSEQ) + 1 FROM STOP_TRIPTYPE WHERE RUN = 'A000006')");
    change("UPDATE STOP SET DESCRIPTION = '\"Main\", 1st' || char(10) || 'Avenue' WHERE rowid = 9");
    change(
        "DELETE FROM STOP_TRIPTYPE WHERE RUN = 'A000007' AND RUNSEQ >"
        " (SELECT MIN(RUNSEQ) FROM STOP_TRIPTYPE WHERE RUN = 'A000007')");
    change("UPDATE RUN SET INT_ROUTEID = NULL WHERE RUN = 'A000008'");
    const DistrictSnapshot district(made.folders());
    RunFeed runs = feedOfRuns(
        district, geo::Projection(
                      {{38.97, -95.24}, middleOfStops(district.database(DatabaseFile::Routing))}));
    EXPECT_THAT(runs.leftOut, UnorderedElementsAre(
                                  Pair("A000002", "it runs on no weekday"),
                                  Pair("A000003", "its first or last stop has no time"),
                                  Pair("A000004", "its times go back"),
                                  Pair("A000007", "fewer than two of its stops are on the map")));
    runs.feed.agency.url = "https://example.org/";
    runs.feed.agency.timezone = "America/Chicago";
    runs.feed.from = runs.feed.until = base::Date::of(2026, 8, 24);
    const support::TemporaryFolder folder;
    feed::write(runs.feed, folder.path());
    const std::string call =
        std::string(VIREO_SOURCE_DIR "/tests/tools/district/export/check-feed") + " " +
        folder.path() + " " + made.folders().database(DatabaseFile::Routing).string();
    EXPECT_EQ(std::system(call.c_str()), 0);
    EXPECT_EQ(runs.feed.trips.size(), 36U);
}

TEST(RunFeed, GoesOnPastMidnight) {
    const MadeDistrict made(1);
    made.execute(DatabaseFile::Routing,
                 "UPDATE STOP_TRIPTYPE SET TIME_AT_STOP = CASE WHEN RUNSEQ = (SELECT MIN(RUNSEQ)"
                 " FROM STOP_TRIPTYPE WHERE RUN = 'A000001') THEN '1899-12-30 23:50:00'"
                 " ELSE '1899-12-30 00:10:00' END WHERE RUN = 'A000001'");
    made.execute(DatabaseFile::Routing, "UPDATE RUN SET ACTIVE = 1, monday = 1");
    const auto runs = feedOfRuns(DistrictSnapshot(made.folders()), geo::Projection({}));
    ASSERT_EQ(runs.feed.trips.size(), 1U);
    EXPECT_EQ(runs.feed.trips[0].times.back().arrival, 24 * 3600 + 600);
}

TEST(Centre, IsKeptInTheSettingsForGood) {
    const MadeDistrict made(1);
    EXPECT_FALSE(keptCentre(made.folders()));
    const geo::Centre centre{{38.97, -95.24}, {105523, 112388.5}};
    keepCentre(made.folders(), centre);
    keepCentre(made.folders(), centre);
    const auto kept = keptCentre(made.folders());
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->degrees.longitude, -95.24);
    EXPECT_EQ(kept->feet.y, 112388.5);
    const std::string settings = support::contentsOf(made.folders().settings());
    EXPECT_EQ(ini::valueIn(settings, "AppSettings", "MAPSoftware", ""), "ArcView3.2");
    EXPECT_EQ(settings.find("Centre"), settings.rfind("Centre"));
    EXPECT_EQ(withSetting("[a]\nx=1\n[District]\n[b]\ncentre=2\n", "district", "Centre", "3"),
              "[a]\nx=1\n[District]\nCentre=3\n[b]\ncentre=2\n");
    for (const char* wrong : {"", "91,0", "1", "1,2,3", "1;2", "nan,1", "38.97N,95"}) {
        EXPECT_FALSE(degreesFrom(wrong)) << wrong;
    }
    writePrivateFile(made.folders().settings(), "[District]\nCentre=95.24,38.97\n");
    EXPECT_EQ(support::errorOf([&] { return keptCentre(made.folders()); }),
              base::errors::PathFileAccess);
}

}  // namespace

}  // namespace tools::district
