#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/base/boundedarray.h"
#include "platform/base/date.h"

/// The empty travel of a vehicle before, between and after the runs of its route.
namespace groupops {

inline constexpr int MaxRunsOfRoute = 50;

/// A value for each run of a route, by its position in start-time order. Raises "Subscript out of
/// range" (9) for the 51st.
template <class T>
using PerRun = base::BoundedArray<T, 1, MaxRunsOfRoute>;

/// One run of a route. Stops are internal ids; below 1 there is none.
struct RouteRun {
    std::string run = {};
    std::int32_t firstStop = 0;
    std::int32_t lastStop = 0;
    std::optional<base::Date> start = {};
    std::optional<base::Date> end = {};
};

/// From one stop to another.
struct Leg {
    std::int32_t from = 0;
    std::int32_t to = 0;

    friend bool operator==(const Leg&, const Leg&) = default;
};

/// The legs of one run. The names of the flags are crossed on purpose: `showBothBeg` marks a run
/// after which the vehicle returns to the garage, `showBothEnd` one before which it comes out of
/// the garage after an idle gap.
struct RunLegs {
    Leg before;
    Leg after;
    bool showBothBeg = false;
    bool showBothEnd = false;

    friend bool operator==(const RunLegs&, const RunLegs&) = default;
};

/// Which legs a vehicle drives: from the garage to the first run, from run to run, and back from
/// the last one. Where it stands idle between two runs for at least `backToGarageGap` minutes, it
/// goes back to the garage in between. A run without a time has no gap beside it.
[[nodiscard]] PerRun<RunLegs> legsOfRoute(const PerRun<RouteRun>& runs, int count,
                                          std::int32_t garage, double backToGarageGap);

// What stands for minutes and miles that are not known.
inline constexpr float NoTravel = -1;  ///< there is no travel record
inline constexpr float NoStop = -3;    ///< a stop of the leg is missing

/// Travel time and distance of a leg, in single precision.
struct Travel {
    float minutes = NoTravel;
    float miles = NoTravel;

    [[nodiscard]] bool isKnown() const { return minutes != NoTravel && minutes != NoStop; }
    friend bool operator==(const Travel&, const Travel&) = default;
};

/// What is stored with a run. A time is missing where the travel or the run's own time is.
struct RunDeadHead {
    Travel before;
    Travel after;
    std::optional<base::Date> beforeStart;  ///< the run's start less the minutes before it
    std::optional<base::Date> afterStart;   ///< the run's end and the minutes after it: meant so
    bool showBothBeg = false;
    bool showBothEnd = false;
};

/// Minutes become whole seconds as everywhere; a time before midnight is on the day before. Raises
/// Overflow for times beyond the calendar.
[[nodiscard]] RunDeadHead deadHeadOf(const RouteRun& run, const RunLegs& legs, Travel before,
                                     Travel after);

}  // namespace groupops
