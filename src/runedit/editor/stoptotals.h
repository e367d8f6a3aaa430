#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/table/texttable.h"

/// What the run editor adds up over its list of stops, so that list and totals never disagree.
namespace runedit {

struct StopTotals {
    int stops = 0;                ///< turn points are not in the list
    std::int64_t passengers = 0;  ///< of the regular stops
    double miles = 0;             ///< from the first stop to the last
    double minutes = 0;           ///< from the first stop to the last: driving and loading
};

/// Of a list that readStopList has read, or one without columns.
[[nodiscard]] StopTotals totalsOf(const table::TextTable& stops);

/// The seats of a vehicle type at a capacity level, Medium where that is blank; nothing where the
/// type or the level is none. Raises what the databases raise.
[[nodiscard]] std::optional<std::int64_t> seatsOf(const std::string& vehType,
                                                  const std::string& capacityLevel);
/// What it asks of each of these, for who asks several questions at once (ado::ReadAhead).
[[nodiscard]] std::vector<std::string> seatsReads(const std::vector<std::string>& vehTypes);

}  // namespace runedit
