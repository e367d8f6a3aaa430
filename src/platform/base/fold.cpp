#include "platform/base/fold.h"

#include <QChar>
#include <algorithm>

#include "platform/base/text.h"

namespace base {

namespace {

/// The bytes that follow the first one hold six bits each.
char32_t characterAt(std::string_view text) {
    const auto size = characterSize(text);
    const auto first = static_cast<unsigned char>(text.front());
    char32_t character = size == 1 ? first : first & (0x7FU >> size);
    for (const char byte : text.substr(1, size - 1)) {
        character = character << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    return character;
}

void append(std::string& text, char32_t character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
        return;
    }
    const unsigned following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    text += static_cast<char>((0xFF00U >> (following + 1) & 0xFFU) | character >> 6 * following);
    for (unsigned left = following; left-- > 0;) {
        text += static_cast<char>(0x80U | (character >> 6 * left & 0x3FU));
    }
}

/// Characters of one byte go by the table of ASCII, bytes that are no text stay as they are.
template <class Ascii, class Other>
std::string mapped(std::string_view text, Ascii ascii, Other other) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto size = characterSize(text);
        if (size == 1) {
            result += ascii(text.front());
        } else {
            append(result, other(characterAt(text)));
        }
        text.remove_prefix(size);
    }
    return result;
}

char loweredByte(char c) { return lowered(c); }
char upperedByte(char c) { return uppered(c); }

}  // namespace

bool isAscii(std::string_view text) {
    return std::ranges::none_of(text,
                                [](char c) { return static_cast<unsigned char>(c) >= 0x80U; });
}

std::string folded(std::string_view text) {
    return mapped(text, loweredByte, [](char32_t c) { return QChar::toCaseFolded(c); });
}

std::string upperCase(std::string_view text) {
    return mapped(text, upperedByte, [](char32_t c) { return QChar::toUpper(c); });
}

std::string lowerCase(std::string_view text) {
    return mapped(text, loweredByte, [](char32_t c) { return QChar::toLower(c); });
}

char32_t foldedCharacter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    return first < 0x80U ? static_cast<unsigned char>(lowered(text.front()))
                         : QChar::toCaseFolded(characterAt(text));
}

int compareFolded(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        const char32_t x = foldedCharacter(a);
        const char32_t y = foldedCharacter(b);
        if (x != y) {
            return x < y ? -1 : 1;
        }
        a.remove_prefix(characterSize(a));
        b.remove_prefix(characterSize(b));
    }
    return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

}  // namespace base
