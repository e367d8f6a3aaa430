#include "runedit/times/stoptimes.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "generatedrun.h"
#include "runedit/times/mdl_Time_Calc_Routines.h"
#include "startup/base/session.h"
#include "support/errors.h"

namespace runedit {

namespace {

using base::Date;
using support::errorOf;
using Times = std::vector<Date>;

constexpr int GeneratedRuns = 2000;

void write(std::span<TimedStop> stops, const StopTimes& times) {
    for (const StopWrite& write : times.writes) {
        TimedStop& stop = stops[write.stop];
        stop.time = write.time.value_or(stop.time);
        if (write.clearsMinutes) {
            stop.loadMinutes = stop.driveMinutes = 0.0F;
        }
    }
}

Date start(std::vector<TimedStop>& stops, Date anchor) {
    const auto times = timesFrom(stops, TimeOrder::Forwards, anchor);
    write(stops, times);
    return times.last;
}

Date end(std::vector<TimedStop>& stops, Date anchor) {
    std::ranges::reverse(stops);
    const auto times = timesFrom(stops, TimeOrder::Backwards, anchor);
    write(stops, times);
    std::ranges::reverse(stops);
    return times.last;
}

Times timesOf(const std::vector<TimedStop>& stops) {
    Times times;
    for (const TimedStop& stop : stops) {
        times.push_back(stop.time);
    }
    return times;
}

void spoilTimes(std::vector<TimedStop>& stops) {
    for (TimedStop& stop : stops) {
        stop.time = Stale;
    }
}

}  // namespace

TEST(StopTimes, GapsAreRoundedOnceHalvesToEven) {
    std::vector<TimedStop> stops = {stop("A", 0.5F, 9), stop("B", 0.5F, 0.125F),
                                    stop("C", 0.5F, 0.375F), stop("D", 0.25F, 0.005F),
                                    stop("E", 7, 0.004F)};
    // 37.5, 52.5, 30.3 and 15.24 seconds.
    EXPECT_EQ(start(stops, at(8, 0)), at(8, 2, 15));
    const Times expected = {at(8, 0), at(8, 0, 38), at(8, 1, 30), at(8, 2), at(8, 2, 15)};
    EXPECT_EQ(timesOf(stops), expected);
    spoilTimes(stops);
    EXPECT_EQ(end(stops, at(8, 2, 15)), at(8, 0));
    EXPECT_EQ(timesOf(stops), expected);
}

TEST(StopTimes, EveryAnchorGivesTheSameTimes) {
    RunGenerator generator(1);
    int pastMidnight = 0;
    for (int run = 0; run < GeneratedRuns; ++run) {
        auto stops = generator.stops();
        const Date first = generator.time();
        const Date last = start(stops, first);
        const Times times = timesOf(stops);
        EXPECT_TRUE(std::ranges::is_sorted(times));
        pastMidnight += last.dateValue() > first.dateValue() ? 1 : 0;

        const auto middle = static_cast<std::size_t>(run) % stops.size();
        spoilTimes(stops);
        stops[middle].time = times[middle];
        const auto forwards = timesFromMiddle(stops, times[middle]);
        ASSERT_TRUE(forwards);
        ASSERT_EQ(forwards->last, last) << run;

        // A stop that keeps its time still moves the others.
        spoilTimes(stops);
        for (TimedStop& one : stops) {
            one.updatesTime = !generator.oneIn(3);
        }
        ASSERT_EQ(end(stops, last), first) << run;
        for (std::size_t i = 0; i < stops.size(); ++i) {
            ASSERT_EQ(stops[i].time, stops[i].updatesTime ? times[i] : Stale) << run;
        }
    }
    EXPECT_GT(pastMidnight, GeneratedRuns / 10);
}

TEST(StopTimes, ARepeatedStopCostsNothing) {
    const std::vector<TimedStop> given = {stop("A", 1, 9), stop("B", 2, 3), stop("B", 4, 5),
                                          stop("C", 6, 7)};
    auto stops = given;
    EXPECT_EQ(start(stops, at(8, 0)), at(8, 11)) << "the time at the first B is forgotten";
    EXPECT_EQ(timesOf(stops), (Times{at(8, 0), at(8, 4), at(8, 4), at(8, 11)}));
    EXPECT_EQ(stops[1].loadMinutes, 2);
    EXPECT_EQ(stops[2].loadMinutes, 0);
    EXPECT_EQ(stops[2].driveMinutes, 0);

    stops = given;
    EXPECT_EQ(end(stops, at(8, 11)), at(7, 59));
    EXPECT_EQ(timesOf(stops), (Times{at(7, 59), at(8, 0), at(8, 0), at(8, 11)}));
    EXPECT_EQ(stops[1].loadMinutes, 0) << "backwards the earlier of the two is the repeated one";
    EXPECT_EQ(stops[2].loadMinutes, 4);
}

TEST(StopTimes, ARepeatedStopLosesItsMinutesOnlyWhereTheIdsAgreeToTheBlank) {
    std::vector<TimedStop> stops = {stop("A", 1, 0), stop(" A", 2, 3), stop("a", 0, 4)};
    stops[1].updatesTime = false;
    const auto times = timesFrom(stops, TimeOrder::Forwards, at(8, 0));
    EXPECT_EQ(times.writes, (std::vector<StopWrite>{{0, at(8, 0), false}, {2, at(8, 6), false}}));

    stops[1].stopId = "A";
    EXPECT_EQ(timesFrom(stops, TimeOrder::Forwards, at(8, 0)).writes,
              (std::vector<StopWrite>{
                  {0, at(8, 0), false}, {1, std::nullopt, true}, {2, at(8, 4), false}}))
        << "the zeros are saved, the time is not";

    stops[0].stopId = stops[1].stopId = std::nullopt;
    EXPECT_EQ(timesFrom(stops, TimeOrder::Forwards, at(8, 0)).last, at(8, 10))
        << "stops without an id are not the same stop";
}

TEST(StopTimes, TheMiddleIsTheFirstStopAtThatVerySecond) {
    std::vector<TimedStop> stops = {stop("A", 1, 0), stop("B", 1, 1), stop("C", 1, 1)};
    EXPECT_FALSE(timesFromMiddle(stops, at(8, 0)));
    EXPECT_FALSE(timesFromMiddle({}, at(8, 0)));
    stops[0].time = at(8, 0, 1);
    stops[1].time = stops[2].time = at(8, 0);
    stops[1].updatesTime = false;
    EXPECT_EQ(timesFromMiddle(stops, at(8, 0))->writes,
              (std::vector<StopWrite>{{1, at(8, 0), false}, {2, at(8, 2), false}}))
        << "the stop in the middle is written in any case";
}

TEST(StopTimes, RaiseWhatCannotBeComputed) {
    using base::errors::InvalidUseOfNull;
    using base::errors::Overflow;
    const auto errorFrom = [](const std::vector<TimedStop>& stops) {
        return errorOf([&] { return timesFrom(stops, TimeOrder::Forwards, at(8, 0)); });
    };
    const std::vector<TimedStop> given = {stop("A", 1, 0), stop("B", 1, 1), stop("B", 1, 1)};
    for (std::size_t i = 0; i < given.size(); ++i) {
        auto stops = given;
        stops[i].loadMinutes.reset();
        EXPECT_EQ(errorFrom(stops), i < 2 ? InvalidUseOfNull : 0)
            << "a repeated stop's are not read";
        stops = given;
        stops[i].driveMinutes.reset();
        EXPECT_EQ(errorFrom(stops), i < 2 ? InvalidUseOfNull : 0);
    }
    for (const float minutes : {1e38F, 1e20F, 1e10F, -1e10F, -1e38F}) {
        EXPECT_EQ(errorFrom({stop("A", minutes, 0), stop("B", 0, minutes)}), Overflow) << minutes;
    }
}

TEST(TimeArithmetic, DiffMinutesRoundsHalvesToEven) {
    startup::resetSession();
    for (const auto& [from, to, minutes] : {std::tuple{at(8, 0), at(9, 30), 90},
                                            {at(8, 0), at(8, 0, 30), 0},
                                            {at(8, 0), at(8, 1, 30), 2},
                                            {at(8, 2, 30), at(8, 0), -2},
                                            {at(8, 0, 31), at(8, 0), -1},
                                            {at(23, 0), Date{86400}, 60}}) {
        EXPECT_EQ(DiffMinutes(from, to), minutes) << from.text() << to.text();
    }
    EXPECT_EQ(errorOf([] { return DiffMinutes(Date::of(100, 1, 1), Date::of(9999, 1, 1)); }),
              base::errors::Overflow);
}

TEST(TimeArithmetic, TimeOverlapSharesMoreThanAnInstant) {
    const struct {
        Date start1, end1, start2, end2;
        bool overlap;
    } spans[] = {{at(7, 0), at(8, 0), at(7, 59, 59), at(9, 0), true},
                 {at(7, 0), at(8, 0), at(8, 0), at(9, 0), false},
                 {at(7, 0), at(9, 0), at(7, 30), at(8, 0), true},
                 {at(7, 0), at(9, 0), at(8, 0), at(8, 0), false},
                 {at(23, 50), at(0, 10), at(0, 5), at(0, 20), true},
                 {at(23, 50), at(0, 10), at(23, 0), at(23, 51), true},
                 {at(23, 50), at(0, 10), at(0, 10), at(23, 50), false},
                 {at(23, 50), Date{86400 + 600}, at(0, 5), at(0, 20), true}};
    for (const auto& [start1, end1, start2, end2, overlap] : spans) {
        EXPECT_EQ(Time_Overlap(start1, end1, start2, end2), overlap) << start1.text();
        EXPECT_EQ(Time_Overlap(start2, end2, start1, end1), overlap) << start2.text();
    }
}

}  // namespace runedit
