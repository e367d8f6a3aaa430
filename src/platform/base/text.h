#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace base {

/// Without blanks (U+0020 only) at the left, at the right, at both ends.
[[nodiscard]] std::string_view trimLeft(std::string_view text);
[[nodiscard]] std::string_view trimRight(std::string_view text);
[[nodiscard]] std::string_view trim(std::string_view text);

/// A code as it is stored: without blanks at the right. One of blanks only, or empty, is one blank.
[[nodiscard]] std::string_view codeOf(std::string_view text);

/// ASCII case folding; other characters stay as they are.
[[nodiscard]] constexpr char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
[[nodiscard]] constexpr char uppered(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
[[nodiscard]] std::string lowered(std::string_view text);
[[nodiscard]] std::string uppered(std::string_view text);

/// Whether two texts are equal without regard to ASCII letter case. No trimming.
[[nodiscard]] bool equalsNoCase(std::string_view a, std::string_view b);

/// Whether a byte goes on with a character of UTF-8 that has begun before it.
[[nodiscard]] constexpr bool continuesCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}
/// The bytes of the character at the beginning of a text that is not empty.
[[nodiscard]] std::size_t characterSize(std::string_view text);
/// Where the character begins that holds the byte at `offset`; the text's end is its own beginning.
[[nodiscard]] std::size_t characterStart(std::string_view text, std::size_t offset);

/// At most `count` characters from the left; a character of several bytes is never cut apart.
[[nodiscard]] std::string_view firstCharacters(std::string_view text, std::size_t count);

/// What `textOf` says of each item, one behind the other and `between` between them.
template <class Items, class TextOf = std::identity>
[[nodiscard]] std::string joined(const Items& items, std::string_view between, TextOf textOf = {}) {
    std::string all;
    std::string_view separator;
    for (const auto& item : items) {
        all.append(separator).append(std::invoke(textOf, item));
        separator = between;
    }
    return all;
}

/// The leading number of a text ("12ab" is 12, "x" is 0), leading blanks ignored.
[[nodiscard]] double leadingNumber(std::string_view text);

}  // namespace base
