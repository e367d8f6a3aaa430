#pragma once

#include <string_view>

#include "platform/ado/connection.h"

namespace runsearch {

enum class Deletion { Done, HasStops, NoSuchRun };

/// Removes the RUN row of that id, and nothing else, unless a stop trip names the run. Both happen
/// as one unit of work, so that no other program puts a stop on the run in between. Raises
/// store::StoreError.
Deletion deleteRun(ado::Connection& routing, std::string_view run);

}  // namespace runsearch
