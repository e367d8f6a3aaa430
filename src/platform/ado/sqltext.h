#pragma once

#include <string>
#include <string_view>

#include <fmt/format.h>

#include "platform/base/text.h"

/// Pieces that the program's statements are put together from.
namespace ado {

/// A text as it stands between the apostrophes of a literal, its own doubled: for keys that the
/// program has read. What a planner types into a search is spliced as typed.
[[nodiscard]] std::string escaped(std::string_view text);

/// The conditions behind a WHERE or HAVING. What stands is trimmed before anything is appended:
/// only a lone first fragment keeps its leading blank.
class Conditions {
public:
    void append(std::string_view fragment);
    /// With " AND" before it, unless it is the first.
    void add(std::string_view fragment);
    /// With the trimmed value in place of {}; nothing where the value is blank.
    void addFilled(fmt::format_string<std::string_view> fragment, std::string_view value);

    [[nodiscard]] bool empty() const { return base::trim(text_).empty(); }
    [[nodiscard]] const std::string& text() const { return text_; }
    /// " Where ", or nothing where there is no condition.
    [[nodiscard]] std::string_view keyword() const { return empty() ? "" : " Where "; }

private:
    std::string text_;
};

}  // namespace ado
