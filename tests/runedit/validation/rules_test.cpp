#include "runedit/validation/rules.h"

#include <gmock/gmock.h>

#include "runedit/validation/rulesupport.h"
#include "support/errors.h"

namespace runedit {
namespace {

using base::Date;
using support::errorOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

StopRow withStudents(const std::string& stopId, std::int64_t students) {
    StopRow stop = stopOf(stopId);
    stop.students = students;
    return stop;
}

StopRow at(const std::string& stopId, std::optional<Date> time) {
    StopRow stop = stopOf(stopId);
    stop.time = time;
    return stop;
}

StopRow ridden(const std::string& stopId, double minutes) {
    StopRow stop = stopOf(stopId);
    stop.rideMinutes = minutes;
    return stop;
}

/// What a stop with one passenger is told at a total of 11; `who` stands where the vehicle does.
std::string tooMany(const std::string& head, const std::string& who, const std::string& which,
                    int students) {
    return head + " has added more passengers than the capacity (with the overfill added) of the " +
           who +
           " assigned to the run. The stop's number of passengers is: " + std::to_string(students) +
           ".  The run's total passenger up to and including this stop is: 11.  The  " + which +
           " with a capacity of: 10.";
}

TEST(Passengers, AsManyAsSeatsAreAcceptedAndTheTotalGoesOn) {
    auto run = runOf("LARGE", "");
    run.capacity = 10;
    const StopRows stops{withStudents("A", 10), withStudents("B", 1), withStudents("C", 0)};
    const auto counted = countPassengers(run, stops);
    EXPECT_EQ(counted.total, 11);
    const std::string type = "vehicle type assigned to this run is: LARGE";
    EXPECT_THAT(messagesOf(counted.findings),
                ElementsAre(tooMany("StopID: B", "vehicle Type", type, 1),
                            tooMany("StopID: C", "vehicle Type", type, 0)));
    run.vehicle = "B7";
    run.intRouteId = 1;
    EXPECT_EQ(messagesOf(countPassengers(run, stops).findings)[0],
              tooMany("In Run: RStopID: B", "vehicle", "vehicle assigned to this run is: B7", 1));
}

TEST(Passengers, TheCountHasSixteenBits) {
    const auto run = runOf("LARGE", "");
    EXPECT_EQ(countPassengers(run, {withStudents("A", 32767)}).total, 32767);
    EXPECT_EQ(errorOf([&] {
                  return countPassengers(run, {withStudents("A", 32767), withStudents("B", 1)});
              }),
              base::errors::Overflow);
}

TEST(RightSide, TheAsterisksStayInTheRecordAndAreTrimmedInTheBox) {
    const auto finding = servedFromTheLeft(stopOf("A"));
    EXPECT_EQ(finding.message,
              "StopID: A was marked as Right Hand Side Pickup Only and the run currently picks up "
              "the stop on the left side.  *** ");
    EXPECT_EQ(
        accumulated({finding, {"R", "B."}}, "       *** "),
        "       *** StopID: A was marked as Right Hand Side Pickup Only and the run currently "
        "picks up the stop on the left side.  ***       *** B.");
}

std::string beyondBell(const std::string& stop, const char* how, const char* time,
                       const char* bell = "8:00:00 AM") {
    return "StopID: " + stop + " has an arrival time that is " + how +
           " than the bell time you have told the run to honor.  The stop's arrival time is: " +
           time + ".  The bell time is: " + bell + ".";
}

TEST(Bell, TheBellItselfIsNeitherEarlyNorLate) {
    const auto bell = Date::timeOfDay(8, 0);
    const StopRows stops = {at("A", Date::timeOfDay(7, 59, 59)), at("B", bell),
                            at("C", Date::timeOfDay(8, 0, 1))};
    EXPECT_THAT(messagesOf(earlierThanBell(stops, bell)),
                ElementsAre(beyondBell("A", "earlier", "7:59:59 AM")));
    EXPECT_THAT(messagesOf(laterThanBell(stops, bell)),
                ElementsAre(beyondBell("C", "later", "8:00:01 AM")));
}

TEST(Bell, AMissingTimeIsMidnightAndTheBellsDayDoesNotCount) {
    EXPECT_THAT(messagesOf(earlierThanBell({at("A", {})}, Date::of(2026, 1, 31, 15, 0))),
                ElementsAre(beyondBell("A", "earlier", "12:00:00 AM", "1/31/2026 3:00:00 PM")));
    EXPECT_THAT(laterThanBell({at("A", {})}, Date::timeOfDay(8, 0)), IsEmpty());
    const auto pastMidnight = Date::timeOfDay(23, 50).plusSeconds(1200);
    EXPECT_THAT(earlierThanBell({at("A", pastMidnight)}, Date::timeOfDay(23, 30)), IsEmpty());
}

TEST(RideTime, AsLongAsAllowedIsAccepted) {
    EXPECT_THAT(messagesOf(ridesTooLong({ridden("A", 60), ridden("B", 60.5)}, 60)),
                ElementsAre("StopID: B has a ride time greater than the max allowed.  Stop's total "
                            "ride time: 60.5 minutes max allowed: 60 minutes."));
}

TEST(TimeConflict, EveryPairOutOfOrderIsFound) {
    const auto eight = Date::timeOfDay(8, 0);
    const auto pair = [](const char* stop, const char* later, const char* time) {
        return std::string("StopID: ") + stop +
               " has an arrival time that is earlier or at the same time as a later stop.  The "
               "stop's arrival time is: 8:00:00 AM.  The later stop is: " +
               later + " with a stop time of: " + time + ".";
    };
    EXPECT_THAT(messagesOf(conflictingTimes(
                    {at("A", eight), at("B", {}), at("C", eight), at("D", Date::timeOfDay(7, 0))})),
                ElementsAre(pair("A", "C", "8:00:00 AM"), pair("A", "D", "7:00:00 AM"),
                            pair("C", "D", "7:00:00 AM")));
}

TEST(TimeConflict, HoldsAHundredStops) {
    StopRows stops(100, stopOf("A"));
    EXPECT_THAT(conflictingTimes(stops), IsEmpty());
    for (auto& stop : stops) {
        stop.time = Date::timeOfDay(8, 0);
    }
    EXPECT_THAT(conflictingTimes(stops), SizeIs(100 * 99 / 2));
    stops.push_back(stopOf("B"));
    EXPECT_EQ(errorOf([&] { return conflictingTimes(stops); }), base::errors::SubscriptOutOfRange);
}

}  // namespace
}  // namespace runedit
