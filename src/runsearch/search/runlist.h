#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/lists/listreader.h"
#include "platform/ado/recordset.h"
#include "platform/table/texttable.h"

namespace runsearch {

/// The columns of the run list.
[[nodiscard]] std::vector<data::ListColumn> runColumns(bool withRouting);
/// The field by which a run is red.
inline constexpr std::string_view NeedsSolving = "Regenerate";

/// The table of all runs from the current one on, one row a run, with or without the four route
/// columns. A run that must be regenerated is red.
[[nodiscard]] table::TextTable readRuns(ado::Recordset& runs, bool withRouting);

/// Whether there is any run, whatever a search asks for.
[[nodiscard]] bool hasRuns(ado::Connection& connection);

/// What a question about a run of that table names: "102-AM, Pine School", and in a line below it
/// school, trip type and bell as far as they are known.
[[nodiscard]] std::string runInWords(const table::TextTable& runs, std::size_t row);

}  // namespace runsearch
