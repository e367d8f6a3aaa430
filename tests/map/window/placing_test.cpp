#include "map/window/placing.h"

#include <set>

#include <gmock/gmock.h>

#include "map/run/solvedrun.h"
#include "support/inventedcity.h"

namespace map {

namespace {

using testing::Contains;
using testing::SizeIs;
using testing::StartsWith;

const streets::DistrictStreets& city() {
    static const streets::DistrictStreets streets(support::inventedCity(8), {}, {}, {});
    return streets;
}

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

}  // namespace

}  // namespace map
