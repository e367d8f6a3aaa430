#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ado/connection.h"
#include "runedit/times/storedstoptimes.h"
#include "stops/triprecord/triprecord.h"

namespace stops {

/// What the head of the form tells about the run.
struct TripRun {
    std::string run;
    std::string description;
    std::optional<base::Date> start;
    std::optional<base::Date> end;
    std::optional<base::Date> bell;
};

/// Nothing where there is no such run.
[[nodiscard]] std::optional<TripRun> readTripRun(ado::Connection& routing, std::string_view run);

/// The id of the run's first timed stop whose load or driving minutes are not known, without which
/// no times can be computed; "" where there is none.
[[nodiscard]] std::string stopWithoutMinutes(ado::Connection& routing, std::string_view run);

/// Computes the times of the record's run around the record's stored time (mode "MID"): forwards to
/// the last stop and back to the first. The run's start and end become the times of its first and
/// last stop, with the run's audit columns; all of it is one unit of work. An earlier stop that
/// happens to stand at the very same time does not become the fixed one.
///
/// False, and nothing written, where the stop is not among the run's timed stops or has no time.
/// Raises what runedit::timeStoredStops raises.
[[nodiscard]] bool timeRunAround(ado::Connection& routing, const TripRecord& record,
                                 const data::Author& author, const runedit::LogLine& log);

}  // namespace stops
