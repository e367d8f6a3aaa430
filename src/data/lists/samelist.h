#pragma once

#include "platform/table/texttable.h"

namespace data {

/// Whether two lists show and keep the same, row by row, with the same rows in red.
[[nodiscard]] bool isSameList(const table::TextTable& one, const table::TextTable& other);

}  // namespace data
