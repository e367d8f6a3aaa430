#include "tools/district/make/dress.h"

#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/schema/schema.h"
#include "tools/district/make/history.h"

namespace tools::district {

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

/// One run with everything wrong: 60 students and a wheelchair in a bus for 54, a right-side stop
/// served from the left, a long ride.
District troubled() {
    District district;
    district.maxRideMinutes = 45;
    district.asOf = base::Date::of(2026, 1, 30, 12);
    district.stops.push_back(std::make_unique<Stop>(
        Stop{.id = 1, .stopId = "A", .type = data::stoptype::Regular, .rightSide = true}));
    district.stops.push_back(
        std::make_unique<Stop>(Stop{.id = 2, .stopId = "S", .type = data::stoptype::School}));
    district.routes.push_back({.id = 1, .routeId = "101", .vehicle = "V7"});
    district.students.push_back({.id = 1, .stop = district.stops[0].get(), .needs = {"WC"}});
    Run run;
    run.id = "R1";
    run.route = 1;
    run.vehicleType = "BUS54";
    run.visits = {
        {.stop = district.stops[0].get(), .sequence = 1, .students = 60, .rightHand = false},
        {.stop = district.stops[1].get(), .sequence = 2, .cumulatedMinutes = 45.5}};
    district.runs.push_back(std::move(run));
    return district;
}

std::vector<std::string> findingsOf(District& district) {
    district.runs.front().findings.clear();
    recordFindings(district);
    std::vector<std::string> texts;
    for (const Finding& finding : district.runs.front().findings) {
        texts.push_back(std::string(finding.type) + "|" + finding.text);
    }
    return texts;
}

}  // namespace

// The recorded warnings must read as those that a validation of the run would write.
TEST(Dress, RecordsFindingsInTheWordsOfAValidation) {
    District district = troubled();
    EXPECT_THAT(
        findingsOf(district),
        ElementsAre(
            "PASSENGERS|StopID: A has added more passengers than the capacity (with the overfill "
            "added) of the vehicle assigned to the run. The stop's number of passengers is: 60.  "
            "The run's total passenger up to and including this stop is: 60.  The  vehicle "
            "assigned "
            "to this run is: V7 with a capacity of: 54.",
            "RIGHTSIDE|StopID: A was marked as Right Hand Side Pickup Only and the run currently "
            "picks up the stop on the left side.  *** ",
            "SPECIAL|StopID: A has 1 passengers with the special need of: WC and the vehicle type "
            "of: BUS54 was assigned to the run and does not handle this special need.",
            "RIDETIME|StopID: S has a ride time greater than the max allowed.  Stop's total ride "
            "time: 45.5 minutes max allowed: 45 minutes."));
    district.runs.front().route.reset();
    EXPECT_EQ(findingsOf(district).front(),
              "PASSENGERS|StopID: A has added more passengers than the capacity (with the overfill "
              "added) of the vehicle Type assigned to the run. The stop's number of passengers is: "
              "60.  The run's total passenger up to and including this stop is: 60.  The  vehicle "
              "type assigned to this run is: BUS54 with a capacity of: 54.");
}

TEST(Dress, FindsNothingWrongWithASoundRun) {
    District district = troubled();
    auto& run = district.runs.front();
    run.vehicleType = "BUS66L";
    run.visits[0].rightHand = true;
    run.visits[1].cumulatedMinutes = 45;
    EXPECT_THAT(findingsOf(district), testing::IsEmpty());
}

TEST(History, SpeaksInTheWordsOfTheFormsAndNeverGoesBackInTime) {
    District district = troubled();
    district.logEntries = 400;
    const std::map<int, const char*> words = {
        {data::activity::Added,
         "Stop added to run: [AS] with the sequence of: [12]\\.  Stop Added in Add/Remove Stops "
         "Screen\\."},
        {data::activity::Removed,
         "Stop removed from run: [AS] the sequence was: [12]\\.  Stop removed in Stop Add/Remove "
         "Screen\\."},
        {data::activity::Moved,
         "Stop's sequence in the run: [AS] was changed - moved (up to top|up one|down one)\\.  The "
         "old sequence was: [1-3]\\.  The new sequence is: [12]\\."},
        {data::activity::Merged,
         "Stop Merged From run: R1 with the sequence of: [1-9] to new run: R1 with a new sequence "
         "of: [12]"}};
    std::map<int, int> met;
    base::Date before;
    tellHistory(district, [&](const LogEntry& entry) {
        ++met[entry.activity];
        EXPECT_THAT(entry.description, MatchesRegex(words.at(entry.activity)));
        EXPECT_GE(entry.date, before);
        EXPECT_LE(entry.date, district.asOf);
        before = entry.date;
    });
    EXPECT_EQ(met.size(), words.size());
}

}  // namespace tools::district
