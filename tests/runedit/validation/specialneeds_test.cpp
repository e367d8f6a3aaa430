#include <gmock/gmock.h>

#include "runedit/validation/rules.h"
#include "runedit/validation/rulesupport.h"
#include "support/errors.h"

namespace runedit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<NeedCount> fiftyNeeds() {
    std::vector<NeedCount> needs;
    for (int i = 1; i <= 50; ++i) {
        needs.push_back({"N" + std::to_string(i), 1});
    }
    return needs;
}

TEST(SpecialNeeds, WhatTheVehicleTypeDoesNotHandle) {
    auto run = runOf("BUS", "B7");
    const std::vector<StopNeeds> stops = {{stopOf("A"), {{"WC", 2}, {" ", 1}}}};
    EXPECT_THAT(messagesOf(needsNotMet(run, stops, {{"SEAT", 1}})),
                ElementsAre("StopID: A has 2 passengers with the special need of: WC and the "
                            "vehicle type of: BUS was assigned to the run and does not handle this "
                            "special need."));
    run.intRouteId = 1;
    EXPECT_THAT(messagesOf(needsNotMet(run, stops, {})),
                ElementsAre("In Run: R stopID: A has 2 passengers with the special need of: WC and "
                            "the vehicle assigned to the route: B7 with the vehicle type of: BUS "
                            "does not handle this special need."));
}

TEST(SpecialNeeds, MoreThanTheVehicleTypeCanCarry) {
    auto run = runOf("BUS", "B7");
    const std::vector<StopNeeds> stops = {{stopOf("A"), {{"WC", 2}}}};
    EXPECT_THAT(messagesOf(needsNotMet(run, stops, {{"WC", 3}})),
                ElementsAre("StopID: A has 2 passengers with the special need of: WC bringing the "
                            "total number of passangers with this special need to: 4 and the "
                            "vehicle type of: BUS was assigned to the run and only has a capacity "
                            "for this special need of:3."));
    run.intRouteId = 1;
    EXPECT_THAT(messagesOf(needsNotMet(run, stops, {{"WC", 3}})),
                ElementsAre("In Run: R stopID: A has 2 passengers with the special need of: WC and "
                            "the vehicle assigned to the route: B7 with the vehicle type of: BUS "
                            "was assigned to the run and only has a capacity for this special need "
                            "of:3."));
}

TEST(SpecialNeeds, AsManyAsCanBeCarriedAreAcceptedInAnyCase) {
    EXPECT_THAT(needsNotMet(runOf("BUS", ""), {{stopOf("A"), {{"wc ", 2}}}}, {{"WC", 4}}),
                IsEmpty());
}

// WC is first on the run and second on the vehicle type, SEAT the other way round.
TEST(SpecialNeeds, TheSecondAdditionGoesToThePlaceOnTheVehicleType) {
    const std::vector<NeedCount> carried = {{"SEAT", 100}, {"WC", 2}};
    const auto run = runOf("BUS", "");
    // The stray addition of WC at place 2 is overwritten when SEAT comes up there.
    EXPECT_THAT(
        needsNotMet(run, {{stopOf("A"), {{"WC", 2}}}, {stopOf("B"), {{"SEAT", 100}}}}, carried),
        IsEmpty());
    // SEAT's second addition goes to WC's place, where the next WC finds it.
    EXPECT_THAT(
        messagesOf(needsNotMet(
            run,
            {{stopOf("A"), {{"WC", 1}}}, {stopOf("B"), {{"SEAT", 5}}}, {stopOf("C"), {{"WC", 1}}}},
            carried)),
        ElementsAre("StopID: C has 1 passengers with the special need of: WC bringing the "
                    "total number of passangers with this special need to: 7 and the "
                    "vehicle type of: BUS was assigned to the run and only has a capacity "
                    "for this special need of:2."));
}

TEST(SpecialNeeds, BothListsHoldFifty) {
    auto tooMany = fiftyNeeds();
    const auto error = [](const std::vector<NeedCount>& needs,
                          const std::vector<NeedCount>& carried) {
        return support::errorOf([&] {
            return needsNotMet(runOf("BUS", ""), {{stopOf("A"), needs}}, carried);
        });
    };
    EXPECT_EQ(error(tooMany, tooMany), 0);
    tooMany.push_back({"N51", 1});
    EXPECT_EQ(error(tooMany, {}), base::errors::SubscriptOutOfRange);
    EXPECT_EQ(error({}, tooMany), base::errors::SubscriptOutOfRange);
}

}  // namespace
}  // namespace runedit
