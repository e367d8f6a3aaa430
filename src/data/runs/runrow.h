#pragma once

#include <string>
#include <string_view>

#include "platform/ado/recordset.h"

namespace data {

/// The statement for the whole row of a run, its id as stored.
[[nodiscard]] std::string runSql(std::string_view run);

/// Opens the run's row; false where there is none. Raises what Recordset::Open raises.
[[nodiscard]] bool openRun(ado::Recordset& row, ado::Connection& routing, std::string_view run,
                           ado::CursorType type = ado::CursorType::ForwardOnly);

/// Blanks around the id do not count.
[[nodiscard]] bool runExists(ado::Connection& routing, std::string_view run);

/// The search for runs to be resolved on the map finds the run from then on. Raises what
/// Connection::Execute raises.
void markForMap(ado::Connection& routing, std::string_view run);

}  // namespace data
