#include "tools/district/deadhead/filltravel.h"

#include <cmath>
#include <csignal>
#include <map>
#include <string>

#include <gmock/gmock.h>

#include "groupops/deadhead/routedeadhead.h"
#include "platform/ado/connection.h"
#include "tools/district/deadhead/computedtravel.h"
#include "tools/district/deadhead/neededways.h"
#include "tools/district/make/madedistrict.h"

namespace tools::district {

namespace {

using testing::HasSubstr;

class FillTravel : public testing::Test {
protected:
    TravelReport fill(bool again = false, bool all = false) const {
        Progress progress;
        return fillTravel({.folders = made_.folders(), .all = all, .again = again}, progress);
    }
    [[nodiscard]] TravelRows rows() const {
        TravelRows all;
        const auto database = made_.open(data::DatabaseFile::DeadCross);
        const auto row = database->prepare(
            "SELECT ENDPOINT_INT_STOPID, DEST_INT_STOPID, TRAVEL_MINUTES, TRAVEL_MILES FROM"
            " DEADHEAD_CROSS");
        while (row->step()) {
            const bool isNew = all.try_emplace({row->integer(0), row->integer(1)},
                                               StoredTravel{static_cast<float>(row->real(2)),
                                                            static_cast<float>(row->real(3))})
                                   .second;
            EXPECT_TRUE(isNew && !all.contains({row->integer(1), row->integer(0)}));
        }
        return all;
    }
    void change(const std::string& sql) const { made_.execute(data::DatabaseFile::DeadCross, sql); }

    MadeDistrict made_;
};

}  // namespace

// The plan's own figures, worked out anew.
TEST_F(FillTravel, GivesTheSampleItsPublishedEmptyTravel) {
    const TravelRows published = rows();
    ASSERT_GT(published.size(), 50U);
    const TravelReport first = fill();
    EXPECT_EQ(first.added, 0U);
    EXPECT_EQ(rows(), published);
    change("DELETE FROM DEADHEAD_CROSS");
    const TravelReport report = fill();
    EXPECT_EQ(report.added, first.known);
    EXPECT_TRUE(report.open.empty()) << report.text();
    for (const auto& [ends, travel] : rows()) {
        const bool isSame = published.contains(ends);
        const auto& told = isSame ? published.at(ends) : published.at({ends.second, ends.first});
        EXPECT_NEAR(travel.minutes, told.minutes, 1.01 / 60);
        EXPECT_NEAR(travel.miles, told.miles, 0.011);
    }
    EXPECT_EQ(made_.number("SELECT NEEDDEADHEADBUILD FROM SYSTEM"), 1);
    // Dead-head finds all its legs, without its last resort of any other way.
    ado::Connection routing;
    routing.Open(made_.folders().database(data::DatabaseFile::Routing).string());
    ado::Connection cross;
    cross.Open(made_.folders().database(data::DatabaseFile::DeadCross).string());
    const auto database = made_.open(data::DatabaseFile::Routing);
    const auto routes = database->prepare("SELECT INT_ROUTEID, GARAGE_STOPID FROM ROUTE");
    while (routes->step()) {
        EXPECT_TRUE(groupops::calculateRoute({routing, cross},
                                             static_cast<std::int32_t>(routes->integer(0)),
                                             static_cast<std::int32_t>(routes->integer(1)))
                        .empty());
    }
}

TEST_F(FillTravel, KeepsWhatWasEnteredAndRenewsWhatItAdded) {
    change("DELETE FROM DEADHEAD_CROSS");
    fill();
    const TravelRows before = rows();
    const auto mine = before.begin()->first;
    const auto entered = std::next(before.begin())->first;
    change("UPDATE DEADHEAD_CROSS SET TRAVEL_MINUTES = 99.5 WHERE ENDPOINT_INT_STOPID = " +
           std::to_string(entered.first) +
           " AND DEST_INT_STOPID = " + std::to_string(entered.second));
    EXPECT_EQ(fill().added, 0U);
    // From now on the district drives half as fast.
    const std::string settings = made_.folders().settings().string();
    const std::string text = support::contentsOf(settings);
    const auto speed = text.find("29.3333");
    ASSERT_NE(speed, std::string::npos);
    writePrivateFile(settings, text.substr(0, speed) + "14.66667" + text.substr(speed + 7));
    EXPECT_EQ(fill().renewed, 0U);
    const TravelReport renewed = fill(true);
    EXPECT_EQ(renewed.renewed, before.size() - 1);
    EXPECT_EQ(renewed.known, 1U);
    const TravelRows now = rows();
    EXPECT_EQ(now.at(entered).minutes, 99.5F);
    EXPECT_NEAR(now.at(mine).minutes, 2 * before.at(mine).minutes, 2.01 / 60);
    EXPECT_EQ(now.at(mine).miles, before.at(mine).miles);
    EXPECT_EQ(fill(true).renewed, before.size() - 1);
}

TEST_F(FillTravel, TellsStopsWithoutAPlaceAndWritesNothingWhenStopped) {
    change("DELETE FROM DEADHEAD_CROSS");
    made_.execute(data::DatabaseFile::Routing,
                  "UPDATE STOP SET XPOS = 0, YPOS = 0 WHERE INT_STOPID ="
                  " (SELECT MIN(FIRSTSTOP) FROM RUN WHERE INT_ROUTEID > 0)");
    {
        Progress progress;
        const auto all = neededWays(*made_.open(data::DatabaseFile::Routing), true);
        EXPECT_GT(all.ways.size(), all.ends.size());
    }
    const TravelReport report = fill();
    ASSERT_EQ(report.open.size(), 1U);
    EXPECT_THAT(report.text(), HasSubstr("it has no place on the map"));
    EXPECT_GT(report.added, 0U);
    change("DELETE FROM DEADHEAD_CROSS");
    Progress progress;
    std::raise(SIGINT);
    EXPECT_THROW(fillTravel({.folders = made_.folders()}, progress), Interrupted);
    EXPECT_TRUE(rows().empty());
}

}  // namespace tools::district
