#pragma once

#include "runsearch/schedule/plan.h"

namespace schedule {

/// Where a time stands on an axis. Places are pixels from the axis's left edge.
struct TimeScale {
    double origin = 0;  ///< the time at the left edge, in seconds
    double secondsPerPixel = 60;

    [[nodiscard]] double xOf(double time) const { return (time - origin) / secondsPerPixel; }
    [[nodiscard]] double timeAt(double x) const { return origin + x * secondsPerPixel; }
    /// Finer (above 1) or coarser, with the same time at x as before.
    [[nodiscard]] TimeScale zoomed(double factor, double x) const;
    /// From one time to another on so many pixels.
    [[nodiscard]] static TimeScale fitting(double from, double until, double pixels);
};

/// The finest and the coarsest scale that a view offers.
constexpr double FinestScale = 2;
constexpr double CoarsestScale = 240;

/// The time between two lines of a kind that are at least so many pixels apart: 5, 10, 15, 30, 60
/// or 120 minutes, whole multiples of two hours where even those are too near.
[[nodiscard]] Seconds stepOf(const TimeScale& scale, double apart);

/// "8:05", with the half of the day behind it where it is asked for: "8:05 AM".
enum class HalfOfDay { Told, Left };
[[nodiscard]] std::string clockText(Seconds time, HalfOfDay half = HalfOfDay::Left);

/// "8:12 – 8:42 AM", "11:40 AM – 12:10 PM".
[[nodiscard]] std::string spanText(Seconds start, Seconds end);

/// Whole minutes, rounded down: what is left. Of a negative number nothing is left.
[[nodiscard]] int minutesLeft(Seconds seconds);
/// To the nearest whole minute: what is missing or shared.
[[nodiscard]] int minutesOf(Seconds seconds);

}  // namespace schedule
