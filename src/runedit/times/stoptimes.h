#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/base/date.h"

namespace runedit {

/// What the time of one stop depends on. Nothing stands for Null.
struct TimedStop {
    std::optional<std::string> stopId = {};  ///< as stored, blanks included
    std::optional<float> loadMinutes = {};   ///< spent at the stop
    std::optional<float> driveMinutes = {};  ///< from the stop before it on the run
    base::Date time = {};                    ///< the stored time; midnight for Null
    bool updatesTime = true;                 ///< false: its time is passed on but not written
};

/// What is to be written to one stop.
struct StopWrite {
    std::size_t stop = 0;                 ///< its place among the stops given, from 0
    std::optional<base::Date> time = {};  ///< nothing: the stored time stays
    bool clearsMinutes = false;           ///< load and driving minutes become 0

    friend bool operator==(const StopWrite&, const StopWrite&) = default;
};

struct StopTimes {
    base::Date last;  ///< the last time computed
    std::vector<StopWrite> writes;
};

/// The seconds of so many minutes, multiplied in single precision and rounded, halves to even.
[[nodiscard]] std::int64_t secondsOf(float minutes);

/// The time so many seconds later. Raises Overflow beyond the year 9999 or before the year 100.
[[nodiscard]] base::Date shifted(base::Date time, std::int64_t seconds);

/// Which way times are passed on; the stops are given in this order.
enum class TimeOrder {
    Forwards,  ///< from the first stop of the run on
    Backwards  ///< from its last stop on
};

/// The times of a run from the one of its first (or last) stop. From stop to stop it takes the load
/// minutes of the earlier and the driving minutes of the later one, added in single precision and
/// rounded once to whole seconds, halves to even; the same either way. A stop that repeats the one
/// before it gets that one's time, and where the ids agree to the blank, its minutes become 0. Two
/// Null ids are not the same stop. Without a stop the anchor is the last time.
///
/// Raises InvalidUseOfNull for Null minutes that are needed, Overflow for times beyond the year
/// 9999 or before the year 100.
[[nodiscard]] StopTimes timesFrom(std::span<const TimedStop> stops, TimeOrder order,
                                  base::Date anchor);

/// The times from the first stop whose stored time is the anchor, forwards; that stop is written in
/// any case. Nothing where no stop stands at that time. Raises as timesFrom does.
[[nodiscard]] std::optional<StopTimes> timesFromMiddle(std::span<const TimedStop> stops,
                                                       base::Date anchor);

}  // namespace runedit
