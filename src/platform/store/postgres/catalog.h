#pragma once

#include <string>
#include <vector>

#include "platform/store/base/schema.h"
#include "platform/store/postgres/link.h"

namespace store::postgres {

/// The tables of a file in the order of their making.
[[nodiscard]] std::vector<Table> readTables(Link& link, const std::string& file);

}  // namespace store::postgres
