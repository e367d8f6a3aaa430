#pragma once

#include <cstdint>
#include <string>

namespace stops {

/// A stop as a list of found stops showed it when the planner chose it.
struct ChosenStop {
    std::int64_t intStopId = 0;
    std::string stopId;
    std::string stopType;
    std::int64_t stopTripId = 0;  ///< key of its trip-type record; 0: chosen from plain stops
    std::string tripType;         ///< the record's
    std::string run;              ///< the record's; blank: on none

    friend bool operator==(const ChosenStop&, const ChosenStop&) = default;
};

}  // namespace stops
