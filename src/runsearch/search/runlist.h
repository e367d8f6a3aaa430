#pragma once

#include "platform/ado/recordset.h"
#include "platform/table/texttable.h"

namespace runsearch {

/// The table of all runs from the current one on, one row a run, with or without the four route
/// columns. A run that must be regenerated is red.
[[nodiscard]] table::TextTable readRuns(ado::Recordset& runs, bool withRouting);

}  // namespace runsearch
