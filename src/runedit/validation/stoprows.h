#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/base/date.h"

namespace runedit {

/// What the checks read of one stop of a run.
struct StopRow {
    std::string stopId;
    std::string run;
    std::int64_t intStopId = 0;
    std::string tripType;
    std::int64_t students = 0;
    std::optional<base::Date> time;  ///< of arrival
    double rideMinutes = 0;          ///< ridden so far
};

using StopRows = std::vector<StopRow>;

/// The conditions (and order) of the checks, for one run.
[[nodiscard]] std::string regularStopsOf(std::string_view run);
[[nodiscard]] std::string timedStopsOf(std::string_view run);
[[nodiscard]] std::string inSequence(std::string_view run);  ///< the timed ones
inline constexpr std::string_view InSequence = " ORDER BY STOP_TRIPTYPE.RUNSEQ";

/// The statement that readStops opens for a condition.
[[nodiscard]] std::string stopsSql(std::string_view condition);

/// The stops under a condition, in the order in which the database returns them.
[[nodiscard]] StopRows readStops(ado::Connection& routing, std::string_view condition);

}  // namespace runedit
