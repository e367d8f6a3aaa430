#pragma once

#include <cstddef>
#include <string_view>

#include "platform/ado/connection.h"
#include "platform/table/texttable.h"

namespace stops {

/// The run's stops in sequence, turn points included, as the form that orders them shows them.
[[nodiscard]] table::TextTable readStopsInSequence(ado::Connection& connection,
                                                   std::string_view run);

/// The column with the key of the stop's trip-type record.
inline constexpr std::size_t StopTripIdColumn = 16;

}  // namespace stops
