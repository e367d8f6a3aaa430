#include "platform/base/utf8.h"

#include "platform/base/text.h"

namespace base {

namespace {

bool isSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

/// The character of `size` bytes whose first one holds `bits` of it.
std::optional<Character> several(std::string_view text, std::size_t size, char32_t bits) {
    constexpr char32_t Least[] = {0, 0, 0x80, 0x800, 0x10000};
    if (text.size() < size) {
        return std::nullopt;
    }
    for (const char byte : text.substr(1, size - 1)) {
        if (!continuesCharacter(byte)) {
            return std::nullopt;
        }
        bits = bits << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    const bool isRight = bits >= Least[size] && bits <= 0x10FFFF && !isSurrogate(bits);
    return isRight ? std::optional(Character{bits, size}) : std::nullopt;
}

}  // namespace

std::optional<Character> wholeCharacter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return Character{first, 1};
    }
    if (first < 0xC2 || first > 0xF4) {
        return std::nullopt;
    }
    const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    return several(text, size, first & (0xFFU >> (size + 1)));
}

}  // namespace base
