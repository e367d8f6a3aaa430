#pragma once

#include <cstddef>
#include <vector>

#include "platform/table/texttable.h"

namespace table {

/// What of a table is shown, in that order. Columns and rows are those of the table, 0-based.
struct Excerpt {
    const TextTable& table;
    std::vector<std::size_t> columns;
    std::vector<std::size_t> rows;
};

/// All columns of the table, and the given rows.
[[nodiscard]] Excerpt wholeRows(const TextTable& table, std::vector<std::size_t> rows);

}  // namespace table
