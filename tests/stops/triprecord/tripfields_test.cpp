#include "stops/triprecord/tripfields.h"

#include <limits>

#include <gmock/gmock.h>

namespace stops {
namespace {

using base::Date;
using base::Value;

TripFields goodFields() {
    return {{5, 0.5, 9, 1.25, Date::timeOfDay(7, 10), "left", true, "Gate code 7"}};
}

TEST(TripFields, RefusesWhatCannotBeSaved) {
    struct Case {
        TripField field;
        Value entered;
        std::string title;  ///< "" where it is accepted
    };
    const std::string hostile = "'; DELETE FROM RUN; --";
    const std::vector<Case> cases{
        {TripField::Students, 0, ""},
        {TripField::Students, 999, ""},
        {TripField::Students, 1000, "Invalid Number of Passengers"},
        {TripField::Students, -1, "Invalid Number of Passengers"},
        {TripField::Students, Value(), "Invalid Number of Passengers"},
        {TripField::Students, "7", "Invalid Number of Passengers"},
        {TripField::LoadTime, hostile, "Invalid Load Time"},
        {TripField::LoadTime, std::numeric_limits<double>::quiet_NaN(), "Invalid Load Time"},
        {TripField::DriveTime, 1e300, "Invalid Driving Time"},
        {TripField::Distance, "far", "Invalid Distance"},
        {TripField::TimeAtStop, hostile, "Invalid Time at Stop"},
        {TripField::TimeAtStop, Value(), "Blank Time at Stop"},
        {TripField::Comment, hostile, ""},
        {TripField::Comment, "two\nlines", ""},
        {TripField::Comment, "", ""},
        {TripField::Comment, std::string(255, 'x'), ""},
        {TripField::Comment, std::string(256, 'x'), "Comment Too Long"},
        {TripField::Comment, std::string("a\0b", 3), "Invalid Comment"},
        {TripField::Comment, "\x1b[2J", "Invalid Comment"},
    };
    for (const Case& refused : cases) {
        TripFields fields = goodFields();
        fields[refused.field] = refused.entered;
        const auto fault = findFault(fields, false);
        EXPECT_EQ(fault ? fault->title : "", refused.title)
            << static_cast<int>(refused.field) << " " << refused.title;
        EXPECT_TRUE(!fault || fault->field == refused.field);
    }
    TripFields untimed = goodFields();
    untimed[TripField::TimeAtStop] = Value();
    EXPECT_FALSE(findFault(untimed, true));
}

TEST(TripFields, KeepsBothSidesOfAConflict) {
    const TripFields held = goodFields();
    TripFields stored = held;
    stored[TripField::Students] = 7;
    stored[TripField::Active] = false;
    stored[TripField::PickupSide] = "";
    TripFields entered = held;
    entered[TripField::Students] = 9;
    entered[TripField::Distance] = 2;

    EXPECT_EQ(changesByOthers(held, stored, entered),
              "Passengers: now 7, it was 5; you entered 9\n"
              "Pick-up side: now nothing, it was \"left\"\n"
              "Active: now no, it was yes");
    TripFields expected = stored;
    expected[TripField::Students] = 9;
    expected[TripField::Distance] = 2;
    EXPECT_EQ(merged(held, stored, entered), expected);
    EXPECT_EQ(changesByOthers(held, held, entered), "");
}

}  // namespace
}  // namespace stops
