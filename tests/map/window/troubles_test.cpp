#include <regex>

#include <gmock/gmock.h>

#include "map/shown/runscene.h"
#include "map/window/cures.h"
#include "streets/network/graphnetwork.h"
#include "support/inventedcity.h"

namespace map {

namespace {

using testing::AllOf;
using testing::HasSubstr;

/// The invented city with a street that ends in the middle of a block, where no bus is to turn.
std::unique_ptr<const streets::Network> cityWithCourt() {
    auto city = *support::inventedCity(8);
    const auto corner = city.nodes[4 * 9 + 4].at;
    const geo::Feet end{corner.x + 260, corner.y + 200};
    city.nodes.push_back({end});
    city.names.emplace_back("Short Court");
    city.pieces.push_back({.from = 4 * 9 + 4,
                           .to = static_cast<std::uint32_t>(city.nodes.size() - 1),
                           .name = static_cast<std::uint32_t>(city.names.size() - 1),
                           .firstPoint = static_cast<std::uint32_t>(city.points.size()),
                           .points = 2,
                           .feet = 328});
    city.points.insert(city.points.end(), {corner, end});
    return streets::graphNetwork(std::make_shared<const streets::StreetMap>(std::move(city)),
                                 {.turnsInDeadEnds = false});
}

ShownRun shownOn(const streets::Network& network, const std::vector<geo::Feet>& places) {
    MappedRun run{.id = "R", .isPickup = true};
    for (const auto place : places) {
        run.stops.push_back({.stopId = "S" + std::to_string(run.stops.size() + 1),
                             .at = place,
                             .isPlaced = true,
                             .students = 3});
    }
    auto way = wayOf(network, run);
    return {.run = std::move(run), .way = std::move(way)};
}

double minutesTold(const std::string& cure) {
    std::smatch found;
    EXPECT_TRUE(std::regex_search(cure, found, std::regex("([0-9.]+) minutes (longer|shorter)")))
        << cure;
    return std::stod(found[1]) * (found[2] == "longer" ? 1 : -1);
}

TEST(Troubles, ADeadEndIsToldOfItsStopWithWhatTheCornerSaves) {
    const auto network = cityWithCourt();
    const auto shown = shownOn(*network, {{-1500, -10}, {150, 90}, {1500, 10}});
    const auto* trouble = troubleAt(shown.way.troubles, 1);
    ASSERT_NE(trouble, nullptr);
    EXPECT_THAT(trouble->text, AllOf(HasSubstr("Stop 2"), HasSubstr("the end of Short Court")));
    EXPECT_TRUE(sceneOf(shown, NoStop).runs[0].stops[1].isWarned);
    const auto cures = curesOf(*network, shown, 0, {});
    const auto& cure = cures[static_cast<std::size_t>(trouble - shown.way.troubles.data())];
    EXPECT_THAT(cure, HasSubstr("at the corner"));
    EXPECT_LT(minutesTold(cure), 0);
}

TEST(Troubles, WhoCrossesIsToldWithWhatTheOwnSideCosts) {
    const auto network = cityWithCourt();
    int crossings = 0;
    for (int i = 0; i < 12; ++i) {
        const auto shown =
            shownOn(*network, {{-1500.0 + 70 * i, 30}, {900.0 - 90 * i, 780}, {1500, -700}});
        const auto cures = curesOf(*network, shown, 0, {});
        for (std::size_t j = 0; j < shown.way.troubles.size(); ++j) {
            const auto stop = shown.way.troubles[j].stop;
            EXPECT_FALSE(shown.way.solution.stops[stop].halt->rightSide);
            if (cures[j].starts_with("No way")) {
                continue;
            }
            auto run = shown.run;
            run.stops[stop].wantsRightSide = true;
            const auto cured = wayOf(*network, run);
            EXPECT_EQ(troubleAt(cured.troubles, stop, true), nullptr);
            const auto more = cured.solution.totalMinutes - shown.way.solution.totalMinutes;
            const bool turns = cured.solution.deadEnds != shown.way.solution.deadEnds;
            EXPECT_EQ(cures[j].ends_with("in a dead end."), turns);
            EXPECT_NEAR(std::abs(more) < 0.05 ? more : minutesTold(cures[j]), more, 0.051);
            ++crossings;
        }
    }
    EXPECT_GT(crossings, 3);
}

TEST(Troubles, ARunThatIsTooFullTellsWhoseStopHasToGo) {
    const auto network = cityWithCourt();
    auto shown = shownOn(*network, {{-1500, -10}, {-500, 390}, {700, -30}, {1500, 10}});
    shown.run.stops[2].students = 2;
    shown.run.seats = 9;
    shown.run.findings = {{"PASSENGERS", "StopID: S4 has added more passengers"}};
    shown.way = wayOf(*network, shown.run);
    const auto cures = curesOf(*network, shown, 0, {});
    EXPECT_THAT(cures.front(), AllOf(HasSubstr("Without stop 3"), HasSubstr("shorter")));
}

}  // namespace

}  // namespace map
