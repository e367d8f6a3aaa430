#include "runsearch/schedule/chart.h"

#include <algorithm>
#include <numeric>

#include <gmock/gmock.h>

#include "runsearch/schedule/randomday.h"
#include "runsearch/schedule/summaries.h"
#include "runsearch/schedule/telling.h"
#include "runsearch/schedule/timescale.h"

namespace schedule {

namespace {

using testing::ElementsAre;

std::vector<int> allRuns(const Plan& plan) {
    std::vector<int> runs(plan.runs.size());
    std::iota(runs.begin(), runs.end(), 0);
    return runs;
}

/// The longest time that a run shares with an earlier one of the same key, by looking at each.
Seconds longestShared(const Plan& plan, const std::vector<int>& runs, int number, auto keyOf) {
    const auto& run = plan.run(number);
    Seconds longest = 0;
    for (const int other : runs) {
        const auto& before = plan.run(other);
        const bool isEarlier = before.start && (*before.start < *run.start ||
                                                (*before.start == *run.start && other < number));
        if (isEarlier && before.route != None && keyOf(plan.route(before.route)) != "" &&
            keyOf(plan.route(before.route)) == keyOf(plan.route(run.route))) {
            longest = std::max(longest, std::min(*before.end, *run.end) - *run.start);
        }
    }
    return longest;
}

TEST(Chart, FindsTheOverlapsThatLookingAtEachPairFinds) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const auto plan = randomDay(seed);
        const auto runs = allRuns(plan);
        const auto found = findOverlaps(plan, runs);
        for (const int number : runs) {
            const auto& run = plan.run(number);
            Seconds expected = 0;
            if (run.start && run.route != None) {
                for (const auto shared :
                     {longestShared(plan, runs, number,
                                    [](const Route& r) { return std::to_string(r.key); }),
                      longestShared(plan, runs, number, [](const Route& r) { return r.vehicle; }),
                      longestShared(plan, runs, number,
                                    [](const Route& r) { return r.driverKey; })}) {
                    expected = expected == 0 ? shared : expected;
                }
            }
            EXPECT_EQ(found[static_cast<std::size_t>(number)].seconds, expected)
                << "run " << number << " of day " << seed;
        }
    }
}

TEST(Chart, CountsBusesAsACountingOfEachBusDoes) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const auto plan = randomDay(seed);
        const auto runs = allRuns(plan);
        const auto busOf = busOfRun(plan);
        const auto curve = ridersCurve(plan, runs, busOf);
        int most = 0;
        for (Seconds time = 0; time < 30 * Hour; time += 37) {
            std::set<int> buses;
            for (const int number : runs) {
                const auto& run = plan.run(number);
                if (run.start && *run.start <= time && time < *run.end) {
                    buses.insert(busOf[static_cast<std::size_t>(number)]);
                }
            }
            ASSERT_EQ(curve.at(time), static_cast<int>(buses.size())) << time << " of " << seed;
            most = std::max(most, curve.at(time));
        }
        EXPECT_GE(curve.peak().count, most);
        EXPECT_EQ(curve.at(curve.peak().at), curve.peak().count);
        EXPECT_GE(busCurves(plan, runs).out.peak().count, curve.peak().count);
    }
}

TEST(Chart, LosesNoRunAndDrawsNoneOverAnother) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const auto plan = randomDay(seed, 500);
        for (const auto order : {Order::ByRoute, Order::BySchool}) {
            const auto chart = layOut(plan, {.order = order, .closedSchools = {1}});
            std::vector<int> placed;
            for (const auto& row : chart.rows) {
                const auto bars = chart.barsOf(row);
                for (std::size_t i = 0; i < bars.size(); ++i) {
                    placed.push_back(bars[i].run);
                    EXPECT_TRUE(i == 0 || bars[i - 1].start <= bars[i].start);
                    const bool isLane = row.kind == RowKind::Lane || row.kind == RowKind::NoRoute;
                    EXPECT_TRUE(!isLane || i == 0 || bars[i - 1].end <= bars[i].start);
                }
            }
            std::ranges::sort(placed);
            EXPECT_EQ(placed, allRuns(plan));
        }
        const auto tuesday = layOut(plan, {.days = 2});
        EXPECT_EQ(tuesday.runs.size(),
                  std::ranges::count_if(plan.runs, [](auto& run) { return (run.days & 2) != 0; }));
        EXPECT_EQ(tuesday.bars.size(), tuesday.runs.size());
    }
}

TEST(Chart, SummariesHoldEachRunOnceAndEachEmptyTripOnce) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const auto plan = randomDay(seed);
        const auto runs = allRuns(plan);
        for (const auto grouping : {Grouping::School, Grouping::SchoolType, Grouping::TripType,
                                    Grouping::Location, Grouping::VehicleType}) {
            const auto sums = summarise(plan, runs, grouping);
            Summary all;
            for (const auto& group : sums.groups) {
                all.runs += group.runs;
                all.stops += group.stops;
                all.emptyMiles += group.emptyMiles;
                all.hours += group.hours;
            }
            EXPECT_EQ(all.runs, static_cast<int>(runs.size()));
            EXPECT_EQ(all.stops, sums.all.stops);
            EXPECT_NEAR(all.emptyMiles, sums.all.emptyMiles, 1e-6);
            EXPECT_NEAR(all.hours, sums.all.hours, 1e-6);
        }
    }
    Plan plan = randomDay(1, 0);
    for (const Seconds start : {6, 7, 8, 15}) {
        auto& run = plan.runs.emplace_back();
        run.route = 0;
        run.start = start * Hour;
        run.end = *run.start + Hour / 2;
        run.before = {Minute, 10};
        run.after = {Minute, 1};
        run.fromGarage = start == 15;
    }
    // Four ways to a run, the way home at noon and the one in the evening.
    EXPECT_DOUBLE_EQ(summarise(plan, allRuns(plan), Grouping::School).all.emptyMiles, 42);
}

/// Runs of one route from "start-end" in seconds after 8:00, each with an empty trip before it.
Chart charted(const std::vector<std::pair<Seconds, Seconds>>& times,
              std::optional<Seconds> trip = 5 * Minute) {
    Plan plan = randomDay(1, 0);
    for (const auto& [start, end] : times) {
        auto& run = plan.runs.emplace_back();
        run.route = 1;
        run.start = 8 * Hour + start;
        run.end = 8 * Hour + end;
        run.before.time = run.after.time = trip;
    }
    return layOut(plan, {.tightUnder = 10 * Minute});
}

TEST(Chart, TellsATightAShortAndAnOverlappingChangeToTheSecond) {
    const auto troubles = [](auto... of) {
        const auto chart = charted({of...});
        return std::vector<int>(chart.troubles.begin() + 1, chart.troubles.end());
    };
    using P = std::pair<Seconds, Seconds>;
    EXPECT_THAT(troubles(P{0, 600}, P{600 + 900, 2000}), ElementsAre(0, 0, 0));
    EXPECT_THAT(troubles(P{0, 600}, P{600 + 899, 2000}), ElementsAre(1, 0, 0));
    EXPECT_THAT(troubles(P{0, 600}, P{600 + 300, 2000}), ElementsAre(1, 0, 0));
    EXPECT_THAT(troubles(P{0, 600}, P{600 + 299, 2000}), ElementsAre(0, 1, 0));
    EXPECT_THAT(troubles(P{0, 600}, P{599, 2000}), ElementsAre(0, 0, 1));
    // What ends within a long run leaves the bus where that one ends.
    EXPECT_THAT(troubles(P{0, 3600}, P{60, 120}, P{3700, 4000}), ElementsAre(0, 1, 1));
    EXPECT_EQ(charted({{0, 600}, {650, 700}}, std::nullopt).problems.size(), 0);
}

TEST(TimeScale, KeepsTheTimeUnderThePointerAndTellsItAsPlannersDo) {
    const TimeScale scale{6.0 * Hour, 30};
    for (const double factor : {0.3, 1.25, 7.0, 1000.0}) {
        EXPECT_NEAR(scale.zoomed(factor, 250).timeAt(250), scale.timeAt(250), 1e-6);
    }
    EXPECT_NEAR(scale.xOf(scale.timeAt(77)), 77, 1e-9);
    EXPECT_EQ(stepOf({0, 60}, 52), Hour);
    EXPECT_EQ(stepOf({0, 5}, 52), 5 * Minute);
    EXPECT_EQ(stepOf({0, 240}, 52), 4 * Hour);
    EXPECT_EQ(spanText(8 * Hour, 9 * Hour), "8:00 – 9:00 AM");
    EXPECT_EQ(spanText(23 * Hour, 25 * Hour), "11:00 PM – 1:00 AM");
    EXPECT_EQ(minutesLeft(119), 1);
    EXPECT_EQ(minutesOf(-91), 2);
    const std::vector<TimeZone> zones{{"Day", 5 * Hour, 9 * Hour - Minute},
                                      {"Late", 9 * Hour, 26 * Hour},
                                      {"Night", 27 * Hour, 28 * Hour}};
    EXPECT_THAT(
        (std::vector{zoneAt(zones, 5 * Hour), zoneAt(zones, 9 * Hour - 1), zoneAt(zones, 9 * Hour),
                     zoneAt(zones, Hour), zoneAt(zones, 3 * Hour), zoneAt(zones, 5 * Hour - 1)}),
        ElementsAre(0, 0, 1, 1, 2, None));
    EXPECT_TRUE(naturalLess("9", "10") && naturalLess("A9b", "a10") && !naturalLess("10", "010"));
}

}  // namespace

}  // namespace schedule
