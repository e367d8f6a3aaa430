#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/table/excerpt.h"
#include "reports/base/content.h"

namespace reports {

/// The kinds of file that a list is written to.
enum class ListFile { Csv, Workbook };

/// By the end of a file's name, ".csv" or ".xlsx", without regard to case; nothing for any other.
[[nodiscard]] std::optional<ListFile> listFileOf(std::string_view path);

/// What is said of a list in a workbook and on paper.
struct ListHeading {
    std::string title;    ///< "Run Search"
    std::string printed;  ///< "Nov 21, 2026 9:41 AM"
    std::string user;
    std::string selection = {};  ///< what is shown of the list, in words
};

/// A list as a report without groups and totals; the table must outlive it.
[[nodiscard]] std::unique_ptr<Content> listContent(table::Excerpt shown, const ListHeading& heading,
                                                   const Options& options);

/// Writes what is shown of a list in the place of a file of that name or not at all: as it is
/// shown, or as numbers and times of a workbook. False, with nothing written, where `keepGoing` said
/// no. Raises "Path/File access error" (75) with the system's reason.
bool writeList(const table::Excerpt& shown, const ListHeading& heading, ListFile kind,
               const std::string& path, const KeepGoing& keepGoing = {});

}  // namespace reports
