#pragma once

#include <string>
#include <string_view>

#include "runedit/map/maprun.h"

namespace runedit {

/// The statement that writes a run into the one-row hand-off record of the map program. Times are
/// times of day; `updateMap` is "YES" or "NO".
[[nodiscard]] std::string startEndSql(const MapRun& run, double seats, std::string_view updateMap);

/// Writes the hand-off record, and makes its row where there is none.
void Set_StartorEnd(ado::Connection& connection, const MapRun& run, double seats,
                    std::string_view updateMap);

}  // namespace runedit
