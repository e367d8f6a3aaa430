#include "tools/district/import/source/charset.h"

#include <algorithm>
#include <array>
#include <cstdint>

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

/// The bytes of the character that begins here; 0 where none does.
std::size_t validSize(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto follows = [&](std::size_t i, unsigned low, unsigned high) {
        return i < text.size() && byte(i) >= low && byte(i) <= high;
    };
    const unsigned char first = byte(0);
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xE0) {
        return first >= 0xC2 && follows(1, 0x80, 0xBF) ? 2 : 0;
    }
    if (first < 0xF0) {
        const unsigned low = first == 0xE0 ? 0xA0 : 0x80;
        const unsigned high = first == 0xED ? 0x9F : 0xBF;
        return follows(1, low, high) && follows(2, 0x80, 0xBF) ? 3 : 0;
    }
    const unsigned low = first == 0xF0 ? 0x90 : 0x80;
    const unsigned high = first == 0xF4 ? 0x8F : 0xBF;
    const bool isWhole =
        first <= 0xF4 && follows(1, low, high) && follows(2, 0x80, 0xBF) && follows(3, 0x80, 0xBF);
    return isWhole ? 4 : 0;
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
        const std::size_t size = validSize(text.substr(at));
        if (size == 0) {
            break;
        }
        at += size;
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
