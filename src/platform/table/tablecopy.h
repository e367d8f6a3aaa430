#pragma once

#include <string>

#include "platform/table/excerpt.h"

namespace table {

enum class Captions { Left, Shown };

/// Rows as a spreadsheet takes them from the clipboard, under a row of captions where those are
/// wanted: cells apart by tabs, rows by line ends. Tabs and line ends inside a cell become blanks.
[[nodiscard]] std::string tabSeparated(const Excerpt& excerpt, Captions captions);

/// The same rows as an HTML table; red cells keep their colour.
[[nodiscard]] std::string htmlTable(const Excerpt& excerpt, Captions captions);

}  // namespace table
