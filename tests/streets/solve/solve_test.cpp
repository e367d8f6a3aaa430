#include "streets/solve/solve.h"

#include <cmath>
#include <map>

#include <gtest/gtest.h>

#include "../network/city.h"
#include "platform/base/value.h"
#include "streets/network/graphnetwork.h"
#include "streets/network/gridnetwork.h"
#include "tools/district/make/plan.h"

namespace streets {

namespace {

using base::Date;

RunToSolve randomRun(City& city, std::size_t stops) {
    RunToSolve run{.anchor = Anchor::End, .time = Date::timeOfDay(8, 0)};
    for (std::size_t i = 0; i < stops; ++i) {
        run.stops.push_back({.id = static_cast<std::int64_t>(i) + 1,
                             .stopId = "S" + std::to_string(i),
                             .address = "Corner",
                             .passed = i % 5 == 3,
                             .at = city.place(),
                             .side = i % 3 == 0 ? DoorSide::Right : DoorSide::Either,
                             .loadMinutes = 0.5});
    }
    return run;
}

/// Seconds of the quickest of all choices of halts.
double bestOf(const Network& network, const RunToSolve& run, std::size_t stop, const Halt& from) {
    if (stop == run.stops.size()) {
        return 0;
    }
    double best = std::numeric_limits<double>::infinity();
    const auto side = run.stops[stop].passed ? DoorSide::Passing : run.stops[stop].side;
    for (const Halt& to : network.haltsAt(run.stops[stop].at, side)) {
        const auto leg = network.leg(from, to);
        best = std::min(
            best,
            !leg ? best : leg->seconds + leg->reluctance + bestOf(network, run, stop + 1, to));
    }
    return best;
}

/// Seconds, with so many times their reluctance.
double sumOfWays(const Solution& solution, double reluctances) {
    double seconds = 0;
    for (const SolvedStop& stop : solution.stops) {
        seconds += stop.way.seconds + reluctances * stop.way.reluctance;
    }
    return seconds;
}

}  // namespace

TEST(Solve, TheGridTakesAsLongAsThePublishedPlan) {
    const auto plan = tools::district::readPlan(tools::district::embeddedPlan());
    const auto network = gridNetwork({});
    std::map<int, geo::Feet> places{{plan.depotId, {plan.depot.x, plan.depot.y}}};
    for (const auto& stop : plan.stops) {
        places[stop.id] = {stop.at.x, stop.at.y};
    }
    for (const auto& school : plan.schools) {
        places[school.id] = {school.at.x, school.at.y};
    }
    int driven = 0;
    for (const auto& leg : plan.legs) {
        if (leg.from == leg.to) {
            continue;
        }
        const auto way = network->leg({.at = places.at(leg.from)}, {.at = places.at(leg.to)});
        EXPECT_NEAR(way->seconds * 1000, static_cast<double>(leg.end - leg.start), 1.0);
        ++driven;
    }
    EXPECT_EQ(driven, 340);
}

TEST(Solve, StreetsGiveTheBestSidesAndAddUp) {
    City city(14, 3);
    const auto network = graphNetwork(city.map(), {});
    int solved = 0;
    for (int trial = 0; trial < 12; ++trial) {
        const auto run = randomRun(city, 6);
        const auto solution = solve(*network, run);
        if (!solution.unserved.empty()) {
            continue;
        }
        ++solved;
        double best = std::numeric_limits<double>::infinity();
        for (const Halt& halt : network->haltsAt(run.stops[0].at, run.stops[0].side)) {
            best = std::min(best, bestOf(*network, run, 1, halt));
        }
        EXPECT_NEAR(sumOfWays(solution, 1), best, 0.1);
        double told = 0;
        double driven = 0;
        for (const auto& line : solution.directions) {
            told += line.type == "Direction" ? std::stod(line.shortDistance) : 0;
        }
        for (const auto& stop : solution.stops) {
            driven += stop.way.feet / 5280;
            const auto place = static_cast<std::size_t>(&stop - solution.stops.data());
            EXPECT_TRUE(stop.halt->rightSide || run.stops[place].passed ||
                        run.stops[place].side == DoorSide::Either);
        }
        EXPECT_NEAR(told, driven, 0.005 * static_cast<double>(solution.directions.size()));
        EXPECT_NEAR(solution.totalMiles, driven, 0.04);
        EXPECT_NEAR(solution.totalMinutes, sumOfWays(solution, 0) / 60 + 0.5 * 4, 0.1);
        EXPECT_EQ(*solution.stops.back().time, run.time);
    }
    EXPECT_GT(solved, 8);
}

TEST(Solve, NamesTheStopThatCannotBeServed) {
    City city(14, 3);
    const auto network = graphNetwork(city.map(), {});
    auto run = randomRun(city, 6);
    run.stops[2].at = {90000, 90000};
    run.stops[4].placed = false;
    const auto solution = solve(*network, run);
    ASSERT_EQ(solution.unserved.size(), 2U);
    EXPECT_TRUE(solution.stops.empty());
    EXPECT_EQ(complaint(run.stops[2], solution.unserved[0].why),
              "The stop S2 (Corner) is too far from any street that a bus may drive.");
    EXPECT_EQ(complaint(run.stops[4], solution.unserved[1].why),
              "The stop S4 (Corner) has no place on the map.");
}

}  // namespace streets
