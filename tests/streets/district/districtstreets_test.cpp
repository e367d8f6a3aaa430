#include "streets/district/districtstreets.h"

#include <cmath>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/files/files.h"
#include "streets/district/closedstreets.h"
#include "streets/district/placesearch.h"
#include "streets/file/streetfile.h"
#include "support/faultof.h"
#include "support/temporaryfolder.h"

namespace {

using namespace streets;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Five avenues cross Oak Street, a block of 500 ft apart; its directions lie 80 ft apart.
StreetMap town() {
    StreetMap map;
    map.centre = {{40, -83}, {1000, 2000}};
    map.names = {"",           "Oak Street",  "1st Avenue",       "2nd Avenue",
                 "3rd Avenue", "Main Avenue", "North Main Avenue"};
    const auto add = [&](std::uint32_t from, std::uint32_t to, std::uint32_t name, bool isTwoWay) {
        const auto first = static_cast<std::uint32_t>(map.points.size());
        map.points.insert(map.points.end(), {map.nodes[from].at, map.nodes[to].at});
        map.pieces.push_back(
            {.from = from,
             .to = to,
             .name = name,
             .firstPoint = first,
             .points = 2,
             .feet = static_cast<float>(std::hypot(map.points[first].x - map.points[first + 1].x,
                                                   map.points[first].y - map.points[first + 1].y)),
             .backward = isTwoWay});
    };
    for (int avenue = 0; avenue < 5; ++avenue) {
        map.nodes.push_back({.at = {1000.0 + 500 * avenue, 2000}});
        map.nodes.push_back({.at = {1000.0 + 500 * avenue, 2080}});
    }
    for (std::uint32_t avenue = 0; avenue < 5; ++avenue) {
        add(2 * avenue, 2 * avenue + 1, 2 + avenue, true);
        if (avenue < 4) {
            add(2 * avenue, 2 * avenue + 2, 1, false);      // pieces 1, 4, 7, 10
            add(2 * avenue + 3, 2 * avenue + 1, 1, false);  // pieces 2, 5, 8, 11
        }
    }
    for (const int number : {101, 109, 120}) {
        map.houses.push_back({1, std::to_string(number), {1000.0 + 10 * (number - 100), 2110}});
    }
    return map;
}

std::vector<std::uint32_t> piecesOf(const std::string& line) {
    const auto list = closedStreetsIn(line);
    return list.streets.empty() ? std::vector<std::uint32_t>{4711}
                                : closedPieces(town(), list.streets.front());
}

TEST(ClosedStreets, ArePiecesBetweenCrossingsAtPlacesOrWhole) {
    EXPECT_THAT(piecesOf("oak st; 2nd Ave; main ave; sewer"), ElementsAre(4, 5, 7, 8));
    EXPECT_THAT(piecesOf("Oak Street; Main Avenue; 2nd Avenue"), ElementsAre(4, 5, 7, 8));
    EXPECT_THAT(piecesOf("Oak Street"), testing::SizeIs(8));
    EXPECT_THAT(piecesOf("Oak Street; 1700 2085"), ElementsAre(5));
    EXPECT_THAT(piecesOf("; 1500 2040; ; gate"), ElementsAre(3));
    EXPECT_THAT(piecesOf("Oak Street; 90000 2085"), IsEmpty());
    EXPECT_THAT(piecesOf("Elm Street"), IsEmpty());
    EXPECT_THAT(piecesOf("Oak Street; 2nd Avenue; Elm Street"), IsEmpty());
}

TEST(ClosedStreets, AreAListForPeople) {
    const auto list = closedStreetsIn(
        "\n# a heading\r\n Oak Street ; 2nd Avenue; Main Avenue ;until May\r\n"
        "; ; ;nothing\nOak Street; 2nd Avenue\na;b;c;d;e\n");
    ASSERT_EQ(list.streets.size(), 1U);
    EXPECT_EQ(lineOf(list.streets[0]), "Oak Street; 2nd Avenue; Main Avenue; until May");
    EXPECT_THAT(list.faults,
                ElementsAre(HasSubstr("Line 4"), HasSubstr("Line 5"), HasSubstr("Line 6")));
    EXPECT_EQ(piecesOf(lineOf(list.streets[0])), piecesOf("Oak Street; 2nd Avenue; Main Avenue"));
}

class OpenStreets : public testing::Test {
protected:
    OpenStreets() { writeStreetFile(folder_.path() + "town.streets", town()); }

    [[nodiscard]] std::shared_ptr<const DistrictStreets> open(
        const std::string& district, const std::string& closed = {}) const {
        return openStreets({.settings = folder_.write("route.ini", "[District]\n" + district),
                            .folder = folder_.path(),
                            .closed = closed});
    }
    [[nodiscard]] std::string refusal(const std::string& district) const {
        return support::faultOf([&] { return open(district); });
    }

    support::TemporaryFolder folder_;
};

TEST_F(OpenStreets, DrivesOnWhatTheSettingsSay) {
    for (const auto* const text :
         {"", "Streets=\n", "Streets=GRID\n", "Streets=grid 1320 29.3333\n"}) {
        const auto streets = open(text);
        ASSERT_TRUE(streets->grid()) << text;
        EXPECT_EQ(streets->grid()->blockFeet, 1320);
        EXPECT_EQ(streets->grid()->feetPerSecond, 88.0 / 3);
        EXPECT_EQ(textOf(*streets->grid()), "grid 1320 29.3333");
        EXPECT_EQ(streets->map(), nullptr);
    }
    EXPECT_EQ(open("Streets=grid 660 30.5\n")->grid()->feetPerSecond, 30.5);
    const auto streets = open("Streets=town.streets\nCentre=40,-83,1000,2000\n");
    EXPECT_FALSE(streets->grid());
    EXPECT_EQ(streets->map()->pieces.size(), town().pieces.size());
    EXPECT_FALSE(streets->network().haltsAt({1700, 2010}, DoorSide::Either).empty());
}

TEST_F(OpenStreets, RefusesWhatMakesNoSense) {
    for (const auto* const grid :
         {"grid 1320", "grid 0 5", "grid 1320 fast", "grid 1 2 3", "grid nan 1"}) {
        EXPECT_THAT(refusal(fmt::format("Streets={}\n", grid)), HasSubstr("names no grid")) << grid;
    }
    EXPECT_THAT(refusal("Streets=none.streets\n"), HasSubstr("none.streets"));
    EXPECT_THAT(refusal("Streets=route.ini\n"), HasSubstr("is no street file"));
    EXPECT_THAT(refusal("Streets=town.streets\nCentre=40.5,-83,1000,2000\n"),
                HasSubstr("another centre"));
}

TEST_F(OpenStreets, ClosesWhatTheListNamesAndTellsTheRest) {
    const auto network = [](const DistrictStreets& streets) {
        return streets.network().haltsAt({1700, 2075}, DoorSide::Right);
    };
    EXPECT_FALSE(network(*open("Streets=town.streets\n")).empty());
    folder_.write("closed.txt", "Oak Street; 2nd Avenue; 3rd Avenue\nElm Street\nbad;;line\n");
    const auto closed = open("Streets=town.streets\n", "closed.txt");
    EXPECT_THAT(closed->closed(), ElementsAre(4, 5));
    EXPECT_THAT(closed->remarks(), ElementsAre(HasSubstr("Line 3"), HasSubstr("Elm Street")));
    for (const Halt& halt : network(*closed)) {
        EXPECT_GT(halt.offStreet, 50);
    }
    EXPECT_THAT(open("Streets=town.streets\n", "gone.avl")->remarks(),
                ElementsAre(HasSubstr("There is no list of closed streets")));
}

TEST_F(OpenStreets, FindsPlacesByWords) {
    const auto find = [](const DistrictStreets& streets, const std::string& words) {
        std::string all;
        for (const FoundPlace& place : findPlaces(streets, words, 3)) {
            all += fmt::format("{} {:.0f},{:.0f}; ", place.text, place.at.x, place.at.y);
        }
        return all;
    };
    const auto streets = open("Streets=town.streets\n");
    EXPECT_EQ(find(*streets, "oak st at 2nd av"), "Oak Street at 2nd Avenue 1500,2000; ");
    EXPECT_EQ(find(*streets, "2nd & OAK"), "2nd Avenue at Oak Street 1500,2000; ");
    EXPECT_EQ(find(*streets, "105 oak"), "105 Oak Street 1050,2110; ");
    EXPECT_EQ(find(*streets, "120 Oak Street"), "120 Oak Street 1200,2110; ");
    EXPECT_EQ(find(*streets, "3rd"), "3rd Avenue 2000,2040; ");
    EXPECT_EQ(find(*streets, "main av"), "Main Avenue 2500,2040; North Main Avenue 3000,2040; ");
    EXPECT_EQ(find(*streets, "7000 oak").substr(0, 10), "Oak Street");
    EXPECT_EQ(find(*streets, "elm"), "");
    EXPECT_EQ(find(*streets, ""), "");
    EXPECT_EQ(find(*streets, " & "), "");
    const auto grid = open("");
    EXPECT_EQ(find(*grid, "3rd ave at 2nd street"), "2nd Street at 3rd Avenue 3300,1980; ");
    EXPECT_EQ(find(*grid, "250 2nd St"), "250 2nd Street 1980,1980; ");
    EXPECT_EQ(find(*grid, "oak"), "");
}

}  // namespace
