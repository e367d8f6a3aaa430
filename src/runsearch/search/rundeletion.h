#pragma once

#include <string_view>

#include "platform/ado/connection.h"

namespace runsearch {

/// Whether there is a run of that id.
[[nodiscard]] bool runExists(ado::Connection& routing, std::string_view run);

enum class Deletion { Done, HasStops, NoSuchRun };

/// Removes the RUN row of that id, and nothing else, unless a stop trip names the run. Both happen
/// as one unit of work, so that no other program puts a stop on the run in between. Raises
/// jet::SqlError (an apostrophe in the id), store::StoreError.
Deletion deleteRun(ado::Connection& routing, std::string_view run);

}  // namespace runsearch
