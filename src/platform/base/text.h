#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace base {

/// Without blanks (U+0020 only) at the left, at the right, at both ends.
[[nodiscard]] std::string_view trimLeft(std::string_view text);
[[nodiscard]] std::string_view trimRight(std::string_view text);
[[nodiscard]] std::string_view trim(std::string_view text);

/// ASCII case folding; other characters stay as they are.
[[nodiscard]] std::string lowered(std::string_view text);
[[nodiscard]] std::string uppered(std::string_view text);

/// Whether two texts are equal without regard to ASCII letter case. No trimming.
[[nodiscard]] bool equalsNoCase(std::string_view a, std::string_view b);

/// At most `count` characters from the left; a character of several bytes is never cut apart, and a
/// byte that is no UTF-8 counts as one.
[[nodiscard]] std::string_view firstCharacters(std::string_view text, std::size_t count);

/// The leading number of a text ("12ab" is 12, "x" is 0), leading blanks ignored.
[[nodiscard]] double leadingNumber(std::string_view text);

}  // namespace base
