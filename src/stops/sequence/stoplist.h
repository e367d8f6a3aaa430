#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/table/texttable.h"

namespace stops {

/// The run's stops in sequence, turn points included, as the form that orders them shows them.
struct StopList {
    /// "ID" is the key of the stop's trip-type record. Behind the columns of the record stand "No."
    /// (1-based), "Map", which says of a stop without a place that it has none, and "On the Bus":
    /// the passengers with whom the bus leaves the stop. A stop without a place (both co-ordinates
    /// 0 or missing) is all red.
    table::TextTable table;
    std::vector<std::size_t> unplaced = {};  ///< the red rows
    std::int64_t passengers = 0;             ///< of the regular stops
};

/// `toSchool`: whether passengers board at the stops; else they leave the bus there.
[[nodiscard]] StopList readStopsInSequence(ado::Connection& connection, std::string_view run,
                                           bool toSchool);

}  // namespace stops
