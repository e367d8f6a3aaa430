#include "reports/page/fonts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <mutex>
#include <unordered_map>
#include <utility>

#include <hb.h>

#include "reports/page/characters.h"
#include "reports/page/fontfiles.h"

namespace reports {

namespace {

constexpr std::size_t FaceCount = 6;
constexpr std::size_t MostWords = 20'000;  ///< of a face that are kept, some 6 MB

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
        return std::hash<std::string_view>{}(text);
    }
};

/// Glyphs of a stretch of one font, added from the left.
void addGlyphs(Shaped& shaped, const OpenFont& font, hb_buffer_t* buffer) {
    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
    const auto em = static_cast<float>(font.file().unitsPerEm);
    auto& glyphs = shaped.runs.emplace_back(GlyphRun{&font.file(), {}}).glyphs;
    glyphs.reserve(count);
    for (unsigned at = 0; at < count; ++at) {
        const auto& position = positions[at];
        const float advance = static_cast<float>(position.x_advance) / em;
        glyphs.push_back({infos[at].codepoint, infos[at].cluster,
                          shaped.width + static_cast<float>(position.x_offset) / em,
                          static_cast<float>(-position.y_offset) / em, advance});
        shaped.width += advance;
    }
}

bool goesOn(char32_t code) {
    const auto category = hb_unicode_general_category(hb_unicode_funcs_get_default(), code);
    return category == HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK ||
           category == HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK ||
           category == HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK ||
           category == HB_UNICODE_GENERAL_CATEGORY_FORMAT;
}

/// A shaped part of a text at the end of what is shaped of it.
void append(Shaped& line, const Shaped& part, std::uint32_t start) {
    for (const GlyphRun& run : part.runs) {
        if (line.runs.empty() || line.runs.back().file != run.file) {
            line.runs.push_back({run.file, {}});
        }
        for (Glyph glyph : run.glyphs) {
            glyph.x += line.width;
            glyph.cluster += start;
            line.runs.back().glyphs.push_back(glyph);
        }
    }
    line.width += part.width;
}

constexpr std::string_view Figures = "0123456789";

bool isNumber(std::string_view word) {
    return word.find_first_not_of(Figures) == std::string_view::npos;
}

struct Word {
    std::string_view text;
    std::size_t start = 0;  ///< in the whole text
    bool rightToLeft = false;
};

/// The words and the blanks between them of a text without right-to-left letters.
template <class Take>
void eachWord(std::string_view text, std::size_t start, bool rightToLeft, const Take& take) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end =
            text[at] == ' ' ? at + 1 : std::min(text.find(' ', at), text.size());
        take(Word{text.substr(at, end - at), start + at, rightToLeft});
        at = end;
    }
}

/// All words from left to right as they are seen.
template <class Take>
void eachSeenWord(std::string_view text, bool rightToLeft, const Take& take) {
    if (!rightToLeft && !mayRunRightToLeft(text)) {
        eachWord(text, 0, false, take);
        return;
    }
    const auto characters = charactersOf(text);
    for (const Stretch& stretch : stretchesOf(characters, rightToLeft)) {
        const auto from = characters.starts[stretch.first];
        const auto end = characters.starts[stretch.first + stretch.count];
        std::vector<Word> words;
        eachWord(text.substr(from, end - from), from, stretch.rightToLeft,
                 [&](const Word& word) { words.push_back(word); });
        if (stretch.rightToLeft) {
            std::reverse(words.begin(), words.end());
        }
        std::ranges::for_each(words, take);
    }
}

}  // namespace

struct Fonts::Parts {
    using Words = std::unordered_map<std::string, Shaped, TextHash, std::equal_to<>>;

    /// Numbers are put together from their digits where the face lets each stand for itself: no two
    /// house numbers of a list are alike, so that keeping them would not pay.
    struct Digits {
        bool areTried = false;
        bool areApart = false;
        std::array<Shaped, 10> each;
    };

    /// Hands over what a word consists of, with the byte of the text at which it starts. It holds
    /// until the next word.
    template <class Take>
    void eachPart(Face face, const Word& word, const Take& take) {
        if (word.rightToLeft || !isNumber(word.text) || !digitsOf(face).areApart) {
            take(whole(face, word), word.start);
            return;
        }
        for (std::size_t at = 0; at < word.text.size(); ++at) {
            take(digitsOf(face).each[static_cast<std::size_t>(word.text[at] - '0')],
                 word.start + at);
        }
    }

    const Shaped& whole(Face face, const Word& word) {
        Words& known = words[static_cast<std::size_t>(face) * 2 + (word.rightToLeft ? 1 : 0)];
        const auto found = known.find(word.text);
        if (found != known.end()) {
            return found->second;
        }
        if (known.size() >= MostWords) {
            known.clear();
        }
        return known.emplace(word.text, made(face, word)).first->second;
    }

    const Digits& digitsOf(Face face);
    [[nodiscard]] bool areApart(Face face, const Digits& digits);
    Shaped made(Face face, const Word& word);
    void shapePart(Shaped& shaped, const OpenFont& font, const Characters& characters,
                   const Stretch& part);

    std::mutex mutex;
    FontFiles files;
    std::array<Words, FaceCount * 2> words;
    std::array<Digits, FaceCount> digits;
    std::unique_ptr<hb_buffer_t, decltype(&hb_buffer_destroy)> buffer{hb_buffer_create(),
                                                                      &hb_buffer_destroy};
};

const Fonts::Parts::Digits& Fonts::Parts::digitsOf(Face face) {
    Digits& own = digits[static_cast<std::size_t>(face)];
    if (!std::exchange(own.areTried, true)) {
        for (std::size_t digit = 0; digit < own.each.size(); ++digit) {
            own.each[digit] = made(face, {Figures.substr(digit, 1)});
        }
        own.areApart = areApart(face, own);
    }
    return own;
}

/// Whether no pair of digits stands closer or wider than its two.
bool Fonts::Parts::areApart(Face face, const Digits& own) {
    for (std::size_t first = 0; first < own.each.size(); ++first) {
        for (std::size_t second = 0; second < own.each.size(); ++second) {
            const std::string pair{Figures[first], Figures[second]};
            constexpr float Least = 1e-5F;
            const float sum = own.each[first].width + own.each[second].width;
            if (std::abs(made(face, {pair}).width - sum) > Least) {
                return false;
            }
        }
    }
    return true;
}

void Fonts::Parts::shapePart(Shaped& shaped, const OpenFont& font, const Characters& characters,
                             const Stretch& part) {
    hb_buffer_clear_contents(buffer.get());
    for (std::size_t at = part.first; at < part.first + part.count; ++at) {
        hb_buffer_add(buffer.get(), characters.codes[at], characters.starts[at]);
    }
    hb_buffer_set_content_type(buffer.get(), HB_BUFFER_CONTENT_TYPE_UNICODE);
    hb_buffer_set_direction(buffer.get(), part.rightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_guess_segment_properties(buffer.get());
    // A letter a glyph: what is drawn as one sign is found and copied as one by few programs.
    constexpr hb_feature_t Apart[] = {
        {HB_TAG('l', 'i', 'g', 'a'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
        {HB_TAG('c', 'l', 'i', 'g'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END}};
    hb_shape(font.font(), buffer.get(), Apart, std::size(Apart));
    addGlyphs(shaped, font, buffer.get());
}

Shaped Fonts::Parts::made(Face face, const Word& word) {
    const auto characters = charactersOf(word.text);
    std::vector<Stretch> parts;
    std::vector<const OpenFont*> fonts;
    for (std::size_t at = 0; at < characters.codes.size(); ++at) {
        const char32_t code = characters.codes[at];
        const OpenFont* font = at > 0 && goesOn(code) ? fonts.back() : &files.of(face, code);
        if (fonts.empty() || fonts.back() != font) {
            parts.push_back({at, 0, word.rightToLeft});
            fonts.push_back(font);
        }
        ++parts.back().count;
    }
    if (word.rightToLeft) {
        std::reverse(parts.begin(), parts.end());
        std::reverse(fonts.begin(), fonts.end());
    }
    Shaped shaped;
    for (std::size_t at = 0; at < parts.size(); ++at) {
        shapePart(shaped, *fonts[at], characters, parts[at]);
    }
    return shaped;
}

Fonts& Fonts::instance() {
    static Fonts fonts;
    return fonts;
}

Fonts::Fonts() : parts_(std::make_unique<Parts>()) {}
Fonts::~Fonts() = default;

float Fonts::width(Face face, std::string_view text) {
    const std::lock_guard lock(parts_->mutex);
    float width = 0;
    eachSeenWord(text, false, [&](const Word& word) {
        parts_->eachPart(face, word, [&](const Shaped& part, std::size_t) { width += part.width; });
    });
    return width;
}

Shaped Fonts::shape(Face face, std::string_view text, bool rightToLeft) {
    const std::lock_guard lock(parts_->mutex);
    Shaped line;
    eachSeenWord(text, rightToLeft, [&](const Word& word) {
        parts_->eachPart(face, word, [&](const Shaped& part, std::size_t start) {
            append(line, part, static_cast<std::uint32_t>(start));
        });
    });
    return line;
}

}  // namespace reports
