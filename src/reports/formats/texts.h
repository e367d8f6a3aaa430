#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/base/content.h"

/// What the writers of files share about texts.
namespace reports {

/// A text that every kind of file can hold: well-formed UTF-8, lines ended by "\n", no other
/// control characters.
[[nodiscard]] std::string plain(std::string_view text);

/// A value as a reader sees it, plain.
[[nodiscard]] std::string plainCell(CellKind kind, const base::Value& value);

/// How many columns a text takes where all letters are equally wide: two for wide letters, none for
/// accents that combine.
[[nodiscard]] std::size_t columnsOf(std::string_view text);

/// A text in lines of at most so many columns (1 or more), broken at blanks, and within a word that
/// is longer than a line. At least one line; letters are never lost.
[[nodiscard]] std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

/// Texts with something between them, without those that are empty.
[[nodiscard]] std::string joined(const std::vector<std::string>& texts, std::string_view between);

/// Whether a column's cells end at one edge.
[[nodiscard]] bool isNumber(CellKind kind);

/// Students that get on ("+4") or off ("−4"); empty for none.
[[nodiscard]] std::string signedNumber(std::optional<int> number);

/// "Printed Nov 21, 2026 9:41 AM by PLANNER".
[[nodiscard]] std::string printedLine(const Heading& heading);

/// What stands in each file that shows children.
inline constexpr std::string_view ConfidentialText = "Confidential";

}  // namespace reports
