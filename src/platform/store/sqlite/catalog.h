#pragma once

#include <string>
#include <vector>

#include "platform/store/base/schema.h"
#include "platform/store/sqlite/faults.h"

namespace store::sqlite {

/// The tables of one attached file ("main" is the file itself), in the order of their making.
[[nodiscard]] std::vector<Table> readTables(const Source& source, const std::string& attachedAs);

}  // namespace store::sqlite
