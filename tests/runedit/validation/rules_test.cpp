#include <gmock/gmock.h>

#include "runedit/validation/Check_NumPassengers.h"
#include "runedit/validation/Check_RightSide.h"
#include "runedit/validation/Check_Run_EarlyBellTime.h"
#include "runedit/validation/Check_Run_LateBellTime.h"
#include "runedit/validation/Check_Run_RideTime.h"
#include "runedit/validation/Check_StopTimeConflict.h"
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

TEST(Passengers, AsManyAsSeatsAreAcceptedAndTheTotalGoesOn) {
    auto run = runOf("LARGE", "");
    run.capacity = 10;
    const auto counted =
        countPassengers(run, {withStudents("A", 10), withStudents("B", 1), withStudents("C", 0)});
    EXPECT_EQ(counted.total, 11);
    EXPECT_THAT(
        messagesOf(counted.findings),
        ElementsAre(
            "StopID: B has added more passengers than the capacity (with the overfill added) of "
            "the vehicle Type assigned to the run. The stop's number of passengers is: 1.  The "
            "run's total passenger up to and including this stop is: 11.  The  vehicle type "
            "assigned to this run is: LARGE with a capacity of: 10.",
            "StopID: C has added more passengers than the capacity (with the overfill added) of "
            "the vehicle Type assigned to the run. The stop's number of passengers is: 0.  The "
            "run's total passenger up to and including this stop is: 11.  The  vehicle type "
            "assigned to this run is: LARGE with a capacity of: 10."));
}

TEST(Passengers, NamesTheVehicleAndTheRunOfARoute) {
    auto run = runOf("LARGE", "B7");
    run.intRouteId = 1;
    EXPECT_THAT(
        messagesOf(countPassengers(run, {withStudents("A", 1)}).findings),
        ElementsAre("In Run: RStopID: A has added more passengers than the capacity (with the "
                    "overfill added) of the vehicle assigned to the run. The stop's number of "
                    "passengers is: 1.  The run's total passenger up to and including this stop "
                    "is: 1.  The  vehicle assigned to this run is: B7 with a capacity of: 0."));
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

TEST(Bell, TheBellItselfIsNeitherEarlyNorLate) {
    const auto bell = Date::timeOfDay(8, 0);
    const StopRows stops = {at("A", Date::timeOfDay(7, 59, 59)), at("B", bell),
                            at("C", Date::timeOfDay(8, 0, 1))};
    EXPECT_THAT(messagesOf(earlierThanBell(stops, bell)),
                ElementsAre("StopID: A has an arrival time that is earlier than the bell time you "
                            "have told the run to honor.  The stop's arrival time is: 7:59:59 AM.  "
                            "The bell time is: 8:00:00 AM."));
    EXPECT_THAT(messagesOf(laterThanBell(stops, bell)),
                ElementsAre("StopID: C has an arrival time that is later than the bell time you "
                            "have told the run to honor.  The stop's arrival time is: 8:00:01 AM.  "
                            "The bell time is: 8:00:00 AM."));
}

TEST(Bell, AMissingTimeIsMidnightAndTheBellsDayDoesNotCount) {
    EXPECT_THAT(messagesOf(earlierThanBell({at("A", {})}, Date::of(2026, 1, 31, 15, 0))),
                ElementsAre("StopID: A has an arrival time that is earlier than the bell time you "
                            "have told the run to honor.  The stop's arrival time is: 12:00:00 AM. "
                            " The bell time is: 1/31/2026 3:00:00 PM."));
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
    const auto found = conflictingTimes(
        {at("A", eight), at("B", {}), at("C", eight), at("D", Date::timeOfDay(7, 0))});
    EXPECT_THAT(
        messagesOf(found),
        ElementsAre("StopID: A has an arrival time that is earlier or at the same time as a later "
                    "stop.  The stop's arrival time is: 8:00:00 AM.  The later stop is: C with a "
                    "stop time of: 8:00:00 AM.",
                    "StopID: A has an arrival time that is earlier or at the same time as a later "
                    "stop.  The stop's arrival time is: 8:00:00 AM.  The later stop is: D with a "
                    "stop time of: 7:00:00 AM.",
                    "StopID: C has an arrival time that is earlier or at the same time as a later "
                    "stop.  The stop's arrival time is: 8:00:00 AM.  The later stop is: D with a "
                    "stop time of: 7:00:00 AM."));
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
