#pragma once

#include <string>

#include "platform/ado/connection.h"
#include "platform/dbf/tablefile.h"

namespace runedit {

/// The query of a run's stops in the order of the run.
[[nodiscard]] std::string stopExportSql(const std::string& run);

/// The stops of a run as the table that the map program reads.
[[nodiscard]] dbf::Table readStopExport(ado::Connection& connection, const std::string& run);

/// The bytes of that table's file. Raises "Overflow" (6), naming the stop, for a position or
/// another figure that cannot be.
[[nodiscard]] std::string stopExportFile(ado::Connection& connection, const std::string& run);

}  // namespace runedit
