#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace base {

/// A character and the bytes that it takes.
struct Character {
    char32_t code = 0;
    std::size_t size = 0;
};

/// The character at the beginning of a text that is not empty; nothing where the bytes are no
/// UTF-8: cut off, longer than they need be, half of a pair, beyond U+10FFFF.
[[nodiscard]] std::optional<Character> wholeCharacter(std::string_view text);

}  // namespace base
