#include <numeric>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/base/error.h"
#include "support/temporaryfolder.h"
#include "tools/district/export/zip.h"
#include "tools/district/import/feed/schoolruns.h"
#include "tools/district/import/feed/shapeway.h"
#include "tools/district/import/feed/tripchoice.h"

namespace {

using namespace tools::district;
using testing::ElementsAre;
using testing::HasSubstr;

/// Weekdays of four weeks, of which `term` runs on Mondays and Thursdays of all and `late` on the
/// Thursdays of two.
std::string calendarDates() {
    std::string text = "service_id,date,exception_type\n";
    for (const int monday : {7, 14, 21, 28}) {
        text += fmt::format("term,202609{:02},1\n", monday);
        text +=
            monday == 28 ? "term,20261001,1\n" : fmt::format("term,202609{:02},1\n", monday + 3);
    }
    return text +
           "late,20260908,1\nlate,20260915,1\nlate,20260922,1\nonce,20260910,1\n"
           "weekend,20260912,1\nweekend,20260919,1\nweekend,20260926,1\n";
}

class FeedTest : public testing::Test {
protected:
    FeedTest() {
        folder_.write("feed/stops.txt",
                      "stop_id,stop_name,stop_lat,stop_lon,location_type\n"
                      "A,\"1 Main St, corner\",40.0,-90.0,\nB,5 Oak Ave,40.01,-90.0,0\n"
                      "S,\"Stop 9, Elm Rd (Oak High School)\",40.02,-90.0,0\nX,Station,,,1\n");
        folder_.write("feed/routes.txt",
                      "route_id,route_short_name,route_long_name\n7AM,7,North\n7PM,7,\n");
        folder_.write("feed/calendar.txt",
                      "service_id,monday,tuesday,wednesday,thursday,friday,saturday,sunday,"
                      "start_date,end_date\nterm,0,0,0,0,0,0,0,20260907,20261002\n");
        folder_.write("feed/calendar_dates.txt", calendarDates());
        folder_.write("feed/trips.txt",
                      "route_id,service_id,trip_id,trip_headsign,block_id,shape_id\n"
                      "7AM,term,m1,null,,line\n7AM,late,m1late,null,,line\n"
                      "7PM,term,p1,Oak Ave,bus 4,\n7PM,term,often,,,\n7PM,once,o1,,,\n"
                      "7PM,weekend,w1,,,\n7PM,term,back,,,\n");
        folder_.write("feed/stop_times.txt",
                      "trip_id,arrival_time,departure_time,stop_id,stop_sequence\n" + times("m1") +
                          times("m1late") +
                          "p1,23:59:30,24:00:30,S,1\np1,,,B,2\np1,24:10:30,24:10:30,A,9\n"
                          "often,8:00:00,8:00:00,A,1\noften,8:05:00,8:05:00,B,2\n"
                          "o1,8:00:00,8:00:00,A,1\no1,8:05:00,8:05:00,B,2\n"
                          "w1,8:00:00,8:00:00,A,1\nw1,8:05:00,8:05:00,B,2\n"
                          "back,8:00:00,8:00:00,A,1\nback,7:05:00,7:05:00,B,2\n");
        folder_.write("feed/frequencies.txt",
                      "trip_id,start_time,end_time,headway_secs\noften,8:00:00,9:00:00,600\n");
        folder_.write("feed/shapes.txt",
                      "shape_id,shape_pt_lat,shape_pt_lon,shape_pt_sequence\n"
                      "line,40.02,-90.0,3\nline,40.0,-90.0,1\nline,40.01,-90.01,2\n");
    }

    /// Two stops in one minute.
    static std::string times(const std::string& trip) {
        return fmt::format(
            "{0},07:00:00,07:00:20,A,1\n{0},07:00:50,07:00:50,B,2\n"
            "{0},07:09:00,07:09:00,S,3\n",
            trip);
    }

    [[nodiscard]] std::string path() const { return folder_.path() + "feed"; }
    static std::vector<std::size_t> all(const transit::Feed& feed) {
        std::vector<std::size_t> trips(feed.trips.size());
        std::iota(trips.begin(), trips.end(), 0);
        return trips;
    }

    support::TemporaryFolder folder_;
};

TEST_F(FeedTest, TripsBecomeRunsWithTheTimesOfTheFeed) {
    const auto feed = transit::readFeed(FeedFiles(path()));
    const SchoolRuns runs = schoolRunsOf(feed, {.trips = all(feed)});
    EXPECT_EQ(runs.count, 2U);
    EXPECT_EQ(runs.schools, "school,name\r\nOHS,Oak High School\r\n");
    EXPECT_EQ(runs.routes, "route,name\r\n7AM,North\r\nbus 4,7\r\n");
    EXPECT_THAT(runs.runs, HasSubstr("7AM-1,\"7 Stop 9, Elm Rd (Oak High School)\",OHS,AM,7AM,"
                                     "1899-12-30 07:00:00,1899-12-30 07:09:00,9,1.74,Trip m1,"
                                     "yes,yes,no,yes,no\r\n"));
    EXPECT_THAT(runs.runs, HasSubstr("7PM-1,7 Oak Ave,OHS,PM,bus 4,1899-12-30 23:59:30,"
                                     "1899-12-31 00:10:30,11,1.79,Trip p1,yes,no,no,yes,no\r\n"));
    EXPECT_THAT(runs.runStops,
                HasSubstr("7AM-1,A,1,0,0.3333333333333333,0,0.00,1899-12-30 07:00:00,right,no\r\n"
                          "7AM-1,B,2,0,0,0.5,0.55,1899-12-30 07:00:50,right,no\r\n"
                          "7AM-1,S,3,0,0,8.166666666666666,1.19,1899-12-30 07:09:00,right,no\r\n"
                          "7PM-1,S,1,0,1,0,0.00,1899-12-30 23:59:30,right,no\r\n"
                          "7PM-1,B-2,2,0,0,5,0.90,1899-12-31 00:05:30,right,no\r\n"
                          "7PM-1,A-2,3,0,0,5,0.90,1899-12-31 00:10:30,right,no\r\n"));
    const std::string told = fmt::format("{}", fmt::join(runs.remarks, "\n"));
    for (const char* part :
         {"often is left out: it is repeated", "o1 is left out: it runs on 1 day",
          "w1 is left out: it runs on no day from Monday", "back is left out",
          "1 trip has the same stops", "1 stop has no time", "1 trip has no shape",
          "no bell times"}) {
        EXPECT_THAT(told, HasSubstr(part));
    }
}

TEST_F(FeedTest, AnEarlierImportKeepsItsRunIdsAndItsPlane) {
    const auto feed = transit::readFeed(FeedFiles(path()));
    const geo::Centre centre{{40.0, -90.0}, {10'000, 20'000}};
    const SchoolRuns runs =
        schoolRunsOf(feed, {.trips = all(feed), .centre = centre, .knownRuns = {{"p1", "7AM-1"}}});
    EXPECT_THAT(runs.runs, HasSubstr("\r\n7AM-1-2,"));
    EXPECT_THAT(runs.runs, HasSubstr("\r\n7AM-1,7 Oak Ave"));
    EXPECT_THAT(runs.stops, HasSubstr("A,REGULAR,\"1 Main St, corner\",\"1 Main St, corner\",,"
                                      "10000.0,20000.0\r\n"));
    EXPECT_EQ(tripOfComment("Trip p1"), "p1");
    EXPECT_EQ(tripOfComment("Wait"), "");
}

TEST_F(FeedTest, SignsChooseTripsAndAreToldWithTheirCounts) {
    const auto feed = transit::readFeed(FeedFiles(path()));
    EXPECT_THAT(tripsWith(feed, {tripSign("route~^7am$"), tripSign("ends-at~high school")}),
                ElementsAre(0, 1, 2));
    EXPECT_THAT(tripsWith(feed, {tripSign("headsign~null")}), ElementsAre());
    EXPECT_THAT(signsTold(feed), HasSubstr("    3 trips: --trips 'ends-at~"));
    for (const char* wrong : {"route", "route~", "stop~A", "route~("}) {
        EXPECT_THROW((void)tripSign(wrong), base::RunTimeError) << wrong;
    }
}

TEST_F(FeedTest, AnArchiveIsReadAsItsFolderAndADamagedOneIsRefused) {
    const std::string zip = folder_.path() + "feed.zip";
    zipFolder(path(), zip);
    ASSERT_TRUE(FeedFiles::isFeed(zip));
    EXPECT_EQ(*FeedFiles(zip).find("stop_times.txt"), *FeedFiles(path()).find("stop_times.txt"));
    std::string bytes = support::contentsOf(zip);
    for (const std::size_t part : {std::size_t{3}, std::size_t{2}}) {
        folder_.write("cut.zip", bytes.substr(0, bytes.size() / part));
        EXPECT_THROW(FeedFiles(folder_.path() + "cut.zip"), base::RunTimeError);
    }
    bytes[bytes.find("stop_times.txt") + 60] ^= 0x10;
    folder_.write("flipped.zip", bytes);
    EXPECT_THROW(FeedFiles(folder_.path() + "flipped.zip"), base::RunTimeError);
    EXPECT_FALSE(FeedFiles::isFeed(folder_.path()));
}

TEST_F(FeedTest, AWrongLineIsNamedWithItsPlace) {
    struct Wrong {
        const char* file;
        const char* line;
        const char* told;
    };
    for (const Wrong& wrong :
         {Wrong{"stops.txt", "Z,Zoo,north,1,0\n", "stops.txt, line 6: stop_lat is no number"},
          Wrong{"stop_times.txt", "m1,7:61:00,7:00:00,A,4\n",
                "arrival_time is no time: \"7:61:00\""},
          Wrong{"stop_times.txt", "m1,7:00:00,7:00:00,Q,4\n", "there is no stop_id \"Q\""},
          Wrong{"trips.txt", "9,term,t9,,,\n", "trips.txt, line 9: there is no route_id \"9\""},
          Wrong{"calendar_dates.txt", "term,20261301,1\n", "date is no date: \"20261301\""},
          Wrong{"trips.txt", ",term,\"t9\n", "trips.txt, line 9"}}) {
        const std::string before = support::contentsOf(path() + "/" + wrong.file);
        folder_.write(std::string("feed/") + wrong.file, before + wrong.line);
        try {
            (void)transit::readFeed(FeedFiles(path()));
            ADD_FAILURE() << wrong.line;
        } catch (const base::RunTimeError& error) {
            EXPECT_THAT(error.what(), HasSubstr(wrong.told));
        }
        folder_.write(std::string("feed/") + wrong.file, before);
    }
}

TEST(ShapeWayTest, ALineThatPassesAPlaceTwiceIsFollowedForwards) {
    // Out to a turning place and back on the same street.
    const std::vector<geo::Feet> line = {{0, 0}, {1000, 0}, {0, 0}};
    EXPECT_THAT(*placesAlong(line, {{100, 5}, {900, -5}, {500, 3}, {100, 0}}),
                ElementsAre(100, testing::AnyOf(900, 1100), 1500, 1900));
    EXPECT_THAT(*placesAlong(line, {{500, 0}, {500, 0}}), ElementsAre(500, 500));
    EXPECT_FALSE(placesAlong({{0, 0}}, {{1, 1}}));
}

}  // namespace
