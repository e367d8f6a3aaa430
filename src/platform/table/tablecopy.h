#pragma once

#include <span>
#include <string>

#include "platform/table/texttable.h"

namespace table {

/// The given rows of a table, under a row of captions, as a spreadsheet takes them from the
/// clipboard: cells apart by tabs, rows by line ends. Tabs and line ends inside a cell become
/// blanks.
[[nodiscard]] std::string tabSeparated(const TextTable& table, std::span<const std::size_t> rows);

/// The same rows as an HTML table; red cells keep their colour.
[[nodiscard]] std::string htmlTable(const TextTable& table, std::span<const std::size_t> rows);

}  // namespace table
