#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/table/texttable.h"
#include "reports/base/content.h"

namespace reports {

/// The kinds of file that a list is written to.
enum class ListFile { Csv, Workbook };

/// By the end of a file's name, ".csv" or ".xlsx", without regard to case; nothing for any other.
[[nodiscard]] std::optional<ListFile> listFileOf(std::string_view path);

/// What is said of a list in a workbook.
struct ListHeading {
    std::string title;    ///< "Run Search"
    std::string printed;  ///< "Nov 21, 2026 9:41 AM"
    std::string user;
};

/// Writes the given rows of a list in that order, columns as the list has them, in the place of a
/// file of that name or not at all: as they are shown, or as numbers and times of a workbook.
/// False, with nothing written, where `keepGoing` said no. Raises "Path/File access error" (75)
/// with the system's reason.
bool writeList(const table::TextTable& table, std::span<const std::size_t> rows,
               const ListHeading& heading, ListFile kind, const std::string& path,
               const KeepGoing& keepGoing = {});

}  // namespace reports
