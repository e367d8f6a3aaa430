#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/value.h"

namespace stops {

/// What a planner may change about a stop's use on one trip.
enum class TripField {
    Students,    ///< who board or leave here
    LoadTime,    ///< minutes spent at the stop
    DriveTime,   ///< minutes from the stop before
    Distance,    ///< miles from the stop before
    TimeAtStop,  ///< of arrival
    PickupSide,  ///< "right", "left"
    Active,
    Comment  ///< of the stop itself: every trip record of the stop shows and shares it
};

inline constexpr std::array AllTripFields{
    TripField::Students,   TripField::LoadTime,   TripField::DriveTime, TripField::Distance,
    TripField::TimeAtStop, TripField::PickupSide, TripField::Active,    TripField::Comment};

/// The fields as they are stored, or as they were entered: then a text that is no number or no time
/// stands as it was typed. Nothing at all is Null, for the two texts it is "".
struct TripFields {
    std::array<base::Value, AllTripFields.size()> values;

    base::Value& operator[](TripField field) { return values[static_cast<std::size_t>(field)]; }
    const base::Value& operator[](TripField field) const {
        return values[static_cast<std::size_t>(field)];
    }
    friend bool operator==(const TripFields&, const TripFields&) = default;
};

/// The column that a field is saved to: of STOP for the comment, otherwise of STOP_TRIPTYPE.
[[nodiscard]] std::string_view columnOf(TripField field);

/// Why a field cannot be saved as it was entered.
struct FieldFault {
    TripField field;
    std::string message;
    std::string title;
};

/// The first field that cannot be saved: a number that is missing or beyond what a bus can do, a
/// text that is no time, a comment that is too long or has control characters. A time may be taken
/// away only with `timeMayBeBlank`.
[[nodiscard]] std::optional<FieldFault> findFault(const TripFields& entered, bool timeMayBeBlank);

/// What a planner reads about the fields that somebody else has changed from `held` to `stored`
/// while `entered` was being typed, one line a field; empty where there are none.
[[nodiscard]] std::string changesByOthers(const TripFields& held, const TripFields& stored,
                                          const TripFields& entered);

/// What was entered where it differs from `held`, otherwise what is stored now.
[[nodiscard]] TripFields merged(const TripFields& held, const TripFields& stored,
                                const TripFields& entered);

}  // namespace stops
