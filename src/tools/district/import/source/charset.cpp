#include "tools/district/import/source/charset.h"

#include <algorithm>
#include <array>

#include "platform/base/utf8.h"

namespace tools::district {

namespace {

constexpr char16_t Replacement = 0xFFFD;

/// The characters of the bytes 0x80 to 0x9F; the others stand for themselves.
constexpr std::array<char16_t, 32> Upper = {
    0x20AC,      Replacement, 0x201A, 0x0192, 0x201E, 0x2026,      0x2020, 0x2021,
    0x02C6,      0x2030,      0x0160, 0x2039, 0x0152, Replacement, 0x017D, Replacement,
    Replacement, 0x2018,      0x2019, 0x201C, 0x201D, 0x2022,      0x2013, 0x2014,
    0x02DC,      0x2122,      0x0161, 0x203A, 0x0153, Replacement, 0x017E, 0x0178};

char16_t characterOf(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? Upper.at(byte - 0x80U) : byte;
}

void append(char16_t character, std::string& utf8) {
    const auto add = [&](unsigned byte) { utf8.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        add(character);
    } else if (character < 0x800) {
        add(0xC0U | (character >> 6U));
        add(0x80U | (character & 0x3FU));
    } else {
        add(0xE0U | (character >> 12U));
        add(0x80U | ((character >> 6U) & 0x3FU));
        add(0x80U | (character & 0x3FU));
    }
}

}  // namespace

std::size_t firstInvalid(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        const auto character = base::wholeCharacter(text.substr(at));
        if (!character) {
            break;
        }
        at += character->size;
    }
    return at;
}

std::size_t firstUndefined(std::string_view text) {
    const auto* const found = std::ranges::find_if(
        text, [](char c) { return characterOf(static_cast<unsigned char>(c)) == Replacement; });
    return static_cast<std::size_t>(found - text.begin());
}

void appendFromWindows1252(std::string_view text, std::string& utf8) {
    for (const char c : text) {
        append(characterOf(static_cast<unsigned char>(c)), utf8);
    }
}

}  // namespace tools::district
