#pragma once

#include <string_view>

#include "platform/ado/connection.h"
#include "platform/table/texttable.h"

namespace stops {

/// The run's stops in sequence, turn points included, as the form that orders them shows them;
/// "ID" is the key of the stop's trip-type record.
[[nodiscard]] table::TextTable readStopsInSequence(ado::Connection& connection,
                                                   std::string_view run);

}  // namespace stops
