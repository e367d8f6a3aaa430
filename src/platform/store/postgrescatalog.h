#pragma once

#include <string>
#include <vector>

#include "platform/store/postgreslink.h"
#include "platform/store/schema.h"

namespace store::postgres {

/// The tables of a file in the order of their making.
[[nodiscard]] std::vector<Table> readTables(Link& link, const std::string& file);

}  // namespace store::postgres
