#include "reports/page/characters.h"

#include <algorithm>
#include <iterator>

#include <fribidi.h>

#include "platform/base/utf8.h"
#include "reports/page/fonts.h"

namespace reports {

namespace {

constexpr char32_t Replacement = 0xFFFD;

/// What is no UTF-8 counts byte by byte.
base::Character decoded(std::string_view text) {
    return base::wholeCharacter(text).value_or(base::Character{Replacement, 1});
}

bool isControl(char32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

/// What a painter refuses: neither a character nor a blank of any kind.
bool isFault(const base::Character& character) {
    const bool isBroken = character.code == Replacement && character.size == 1;
    return isBroken || isControl(character.code);
}

}  // namespace

Characters charactersOf(std::string_view text) {
    Characters characters;
    characters.codes.reserve(text.size());
    characters.starts.reserve(text.size() + 1);
    for (std::size_t at = 0; at < text.size();) {
        const base::Character character = decoded(text.substr(at));
        characters.codes.push_back(isControl(character.code) ? U' ' : character.code);
        characters.starts.push_back(static_cast<std::uint32_t>(at));
        at += character.size;
    }
    characters.starts.push_back(static_cast<std::uint32_t>(text.size()));
    return characters;
}

bool isClean(std::string_view text) {
    if (std::ranges::all_of(text, [](char c) { return c >= 0x20 && c < 0x7F; })) {
        return true;
    }
    for (std::size_t at = 0; at < text.size();) {
        const base::Character character = decoded(text.substr(at));
        if (isFault(character)) {
            return false;
        }
        at += character.size;
    }
    return true;
}

std::string cleaned(std::string_view text) {
    std::string clean;
    clean.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const base::Character character = decoded(text.substr(at));
        if (isControl(character.code)) {
            clean += ' ';
        } else if (isFault(character)) {
            clean += "\xEF\xBF\xBD";
        } else {
            clean += text.substr(at, character.size);
        }
        at += character.size;
    }
    return clean;
}

bool mayRunRightToLeft(std::string_view text) {
    // The bytes that begin U+0580 to U+0FFF, U+F000 to U+FFFF and the planes above.
    return std::ranges::any_of(text, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte >= 0xD6 && byte <= 0xE0) || byte >= 0xEF;
    });
}

std::vector<Stretch> stretchesOf(const Characters& characters, bool rightToLeft) {
    const auto count = static_cast<FriBidiStrIndex>(characters.codes.size());
    const auto* codes = reinterpret_cast<const FriBidiChar*>(characters.codes.data());
    std::vector<FriBidiCharType> types(characters.codes.size());
    std::vector<FriBidiBracketType> brackets(characters.codes.size());
    std::vector<FriBidiLevel> levels(characters.codes.size());
    FriBidiParType base = rightToLeft ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
    fribidi_get_bidi_types(codes, count, types.data());
    fribidi_get_bracket_types(codes, count, types.data(), brackets.data());
    if (fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), count, &base,
                                            levels.data()) == 0) {
        return {{0, characters.codes.size(), rightToLeft}};
    }
    std::vector<Stretch> stretches;
    std::vector<FriBidiLevel> of;
    for (std::size_t at = 0; at < levels.size(); ++at) {
        if (of.empty() || of.back() != levels[at]) {
            stretches.push_back({at, 0, levels[at] % 2 != 0});
            of.push_back(levels[at]);
        }
        ++stretches.back().count;
    }
    // Every sequence at or above a level is turned, from the highest level down to the first odd.
    for (int level = of.empty() ? 0 : *std::ranges::max_element(of); level > 0; --level) {
        for (std::size_t at = 0; at < of.size();) {
            std::size_t end = at;
            while (end < of.size() && of[end] >= level) {
                ++end;
            }
            const auto from = static_cast<std::ptrdiff_t>(at),
                       to = static_cast<std::ptrdiff_t>(end);
            std::reverse(stretches.begin() + from, stretches.begin() + to);
            std::reverse(of.begin() + from, of.begin() + to);
            at = end + 1;
        }
    }
    return stretches;
}

bool startsRightToLeft(std::string_view text) {
    if (!mayRunRightToLeft(text)) {
        return false;
    }
    const auto characters = charactersOf(text);
    const auto strong = std::ranges::find_if(characters.codes, [](char32_t code) {
        return FRIBIDI_IS_STRONG(fribidi_get_bidi_type(code)) != 0;
    });
    return strong != characters.codes.end() && FRIBIDI_IS_RTL(fribidi_get_bidi_type(*strong)) != 0;
}

}  // namespace reports
