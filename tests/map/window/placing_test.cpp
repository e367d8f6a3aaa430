#include "map/window/placing.h"

#include <set>

#include <gmock/gmock.h>

#include "map/run/solvedrun.h"
#include "map/window/detours.h"
#include "streets/network/graphnetwork.h"
#include "support/inventedcity.h"

namespace map {

namespace {

using testing::Contains;
using testing::SizeIs;
using testing::StartsWith;

const std::shared_ptr<const streets::DistrictStreets>& sharedCity() {
    static const auto streets = std::make_shared<const streets::DistrictStreets>(
        support::inventedCity(8), streets::DrivingRules(), std::vector<std::uint32_t>(),
        std::vector<std::string>());
    return streets;
}
const streets::DistrictStreets& city() { return *sharedCity(); }

/// A run past the middle of the city to a school, with a stop that has no place.
MappedRun runWithUnplaced() {
    MappedRun run{.id = "R", .seats = 20, .isPickup = true};
    run.end = base::Date::timeOfDay(8, 0);
    const std::vector<geo::Feet> places{{},          {-1500, -700}, {-600, 410},
                                        {300, -420}, {900, 380},    {1500, 800}};
    for (std::size_t i = 0; i < places.size(); ++i) {
        run.stops.push_back({.stopTripId = static_cast<std::int64_t>(i) + 1,
                             .kind = i == 5 ? StopKind::School : StopKind::Stop,
                             .at = places[i],
                             .isPlaced = i > 0,
                             .students = 3,
                             .loadMinutes = 0.5});
    }
    return run;
}

/// The least that the run comes to with the stop there, wherever it stands in the order.
double leastMinutes(const MappedRun& run, geo::Feet at) {
    auto placed = withStopAt(run, 0, at);
    placed.stops[0].wantsRightSide = true;
    double least = wayOf(city().network(), placed).solution.totalMinutes;
    for (std::size_t before = 2; before < placed.stops.size(); ++before) {
        const auto way = wayOf(city().network(), *withStopMoved(placed, 0, before));
        least = std::min(least, way.solution.totalMinutes);
    }
    return least;
}

TEST(Placing, BothSidesOfACornerAreOfferedWhereTheyCostTheLeast) {
    const auto run = runWithUnplaced();
    const auto found = candidatesFor(city(), run, 0, "East Elder Street at 8th Avenue", {});
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_NE(found[0].side, found[1].side);
    EXPECT_LE(found[0].minutesMore, found[1].minutesMore);
    for (const auto& one : found) {
        const auto& solution = one.shown.way.solution;
        EXPECT_NEAR(solution.totalMinutes, leastMinutes(run, one.at), 0.1) << one.side;
        EXPECT_TRUE(solution.stops[one.stop].halt->rightSide);
        EXPECT_EQ(one.shown.run.stops.back().kind, StopKind::School);
        EXPECT_THAT(one.effects, Contains("Passengers 15 of 20 seats"));
        EXPECT_THAT(one.effects, Contains("Arrival 08:00 AM, as before"));
        EXPECT_THAT(one.effects.front(), StartsWith("Run starts"));
    }
}

TEST(Placing, OneStopIsPlacedWhileAnotherHasNoPlaceYet) {
    auto run = runWithUnplaced();
    const auto minutes =
        candidatesFor(city(), run, 0, "East Elder Street at 8th Avenue", {}).front().minutesMore;
    run.stops.insert(run.stops.begin() + 2, {.stopTripId = 99, .students = 1});
    const auto found = candidatesFor(city(), run, 0, "East Elder Street at 8th Avenue", {});
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_NEAR(found.front().minutesMore, minutes, 0.01);
    EXPECT_EQ(candidatesScene(found, 1).runs[0].stops.back().number, "B");
}

geo::Feet middleOf(geo::Feet one, geo::Feet other) {
    return {(one.x + other.x) / 2, (one.y + other.y) / 2};
}

/// Whether a way leads over one of the pieces, by what lies below its lines.
bool drives(const RunWay& way, const std::vector<std::uint32_t>& pieces) {
    for (const auto& line : linesOf(way)) {
        for (std::size_t i = 1; i < line.size(); ++i) {
            const auto middle = middleOf(line[i - 1], line[i]);
            if (std::hypot(middle.x - line[i].x, middle.y - line[i].y) < 40) {
                continue;  // too near to a crossing to tell its streets apart
            }
            const auto halts = city().network().haltsAt(middle, streets::DoorSide::Either);
            if (std::ranges::count(pieces, streets::pieceOf(halts.front().piece)) > 0) {
                return true;
            }
        }
    }
    return false;
}

TEST(Detours, AnAvoidedStreetIsDrivenByNoLegAndATurnIsMadeWhereItIsAllowed) {
    auto run = runWithUnplaced();
    run.stops.erase(run.stops.begin());
    const auto way = wayOf(city().network(), run);
    int tried = 0;
    for (const auto& stop : way.drawn) {
        const auto& line = stop.way.line;
        const auto at =
            line.empty() ? geo::Feet() : middleOf(line[line.size() / 2 - 1], line[line.size() / 2]);
        const auto offer = line.empty() ? std::nullopt : detoursAt(city(), way, at, 40);
        if (!offer || offer->street.avoided.empty()) {
            continue;
        }
        const auto found = withDetours(sharedCity(), {offer->street}, run);
        ASSERT_TRUE(found.way.isKnown());
        EXPECT_GE(found.way.solution.totalMinutes, way.solution.totalMinutes - 0.02);
        EXPECT_FALSE(drives(found.way, offer->street.avoided));
        EXPECT_EQ(found.streets->closed().size(), offer->street.avoided.size());
        EXPECT_EQ(stepsAt(city(), {offer->street}, at, 40).empty(), !offer->block);
        tried += drives(way, offer->street.avoided) ? 1 : 0;
    }
    EXPECT_GT(tried, 0);
}

TEST(Detours, TheBusTurnsBackWhereItIsAllowedTo) {
    auto run = runWithUnplaced();
    run.stops = {run.stops[3], run.stops[4]};
    const auto halt = wayOf(city().network(), run).solution.stops[0].halt.value();
    run.stops[0].at = run.stops[1].at = halt.at;
    for (const double aside : {-8.0, 8.0}) {
        run.stops[aside < 0 ? 0 : 1].at.y += aside;
        run.stops[aside < 0 ? 0 : 1].wantsRightSide = true;
    }
    const auto way = wayOf(city().network(), run);
    const auto offer = detoursAt(city(), way, halt.at, 40);
    ASSERT_TRUE(offer && way.isKnown());
    const auto found = withDetours(sharedCity(), {offer->uTurn}, run);
    EXPECT_LT(found.way.solution.totalMinutes, way.solution.totalMinutes);
    EXPECT_TRUE(std::ranges::any_of(found.way.drawn[1].way.stretches, &streets::Stretch::uTurn));
    EXPECT_THAT(detourText({offer->street, offer->uTurn}), testing::HasSubstr("U-turn allowed at"));
}

}  // namespace

}  // namespace map
