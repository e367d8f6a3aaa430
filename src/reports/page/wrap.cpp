#include "reports/page/wrap.h"

#include <algorithm>
#include <map>

#include "reports/page/fonts.h"

namespace reports {

namespace {

/// Where to break a word of which that much fits: behind its last hyphen or slash, if not too
/// early.
std::size_t breakIn(std::string_view fits) {
    const auto sign = fits.find_last_of("-/");
    return sign != std::string_view::npos && sign > fits.size() / 3 ? sign + 1 : fits.size();
}

/// Takes words into lines one by one.
class Wrapping {
public:
    Wrapping(Face face, float size, float width, bool rightToLeft)
        : face_(face), size_(size), room_(width), rightToLeft_(rightToLeft) {}

    void take(std::string_view paragraph);
    std::vector<Line> lines;

private:
    void takeWord(std::string_view paragraph, std::size_t from, std::size_t end);
    void endLine() {
        lines.push_back({text_, widthOf(face_, size_, text_), rightToLeft_});
        text_ = {};
    }

    Face face_;
    float size_;
    float room_;
    bool rightToLeft_;
    std::string_view text_;  ///< of the line that is being filled
};

void Wrapping::takeWord(std::string_view paragraph, std::size_t from, std::size_t end) {
    const std::string_view word = paragraph.substr(from, end - from);
    const std::size_t begin =
        text_.empty() ? from : static_cast<std::size_t>(text_.data() - paragraph.data());
    const std::string_view longer = paragraph.substr(begin, end - begin);
    if (widthOf(face_, size_, longer) <= room_) {
        text_ = longer;
        return;
    }
    if (!text_.empty()) {
        endLine();
    }
    std::string_view rest = word;
    while (widthOf(face_, size_, rest) > room_) {
        const auto part = breakIn(rest.substr(0, fitting(face_, size_, rest, room_)));
        if (part >= rest.size()) {
            break;
        }
        text_ = rest.substr(0, part);
        endLine();
        rest.remove_prefix(part);
    }
    text_ = rest;
}

void Wrapping::take(std::string_view paragraph) {
    text_ = {};
    for (std::size_t at = 0; at < paragraph.size();) {
        const auto from = paragraph.find_first_not_of(' ', at);
        if (from == std::string_view::npos) {
            break;
        }
        at = std::min(paragraph.find(' ', from), paragraph.size());
        takeWord(paragraph, from, at);
    }
    endLine();
}

}  // namespace

float widthOf(Face face, float size, std::string_view text) {
    return Fonts::instance().width(face, text) * size;
}

std::size_t fitting(Face face, float size, std::string_view word, float width) {
    std::map<std::uint32_t, float> letters;
    for (const GlyphRun& run : Fonts::instance().shape(face, word, false).runs) {
        for (const Glyph& glyph : run.glyphs) {
            letters[glyph.cluster] += glyph.advance * size;
        }
    }
    std::vector<std::uint32_t> ends;
    float taken = 0;
    for (auto letter = letters.begin(); letter != letters.end(); ++letter) {
        taken += letter->second;
        if (taken > width && !ends.empty()) {
            break;
        }
        const auto next = std::next(letter);
        ends.push_back(next == letters.end() ? static_cast<std::uint32_t>(word.size())
                                             : next->first);
    }
    // Letters that join others may be wider where a line ends.
    while (ends.size() > 1 && widthOf(face, size, word.substr(0, ends.back())) > width) {
        ends.pop_back();
    }
    return ends.empty() ? word.size() : ends.back();
}

std::vector<Line> wrapped(Face face, float size, std::string_view text, float width) {
    const bool rightToLeft = startsRightToLeft(text);
    if (text.find('\n') == std::string_view::npos) {
        const float whole = widthOf(face, size, text);
        if (whole <= width) {
            return {{text, whole, rightToLeft}};
        }
    }
    Wrapping wrapping(face, size, width, rightToLeft);
    for (std::size_t at = 0; at <= text.size();) {
        const auto end = std::min(text.find('\n', at), text.size());
        std::string_view paragraph = text.substr(at, end - at);
        if (paragraph.ends_with('\r')) {
            paragraph.remove_suffix(1);
        }
        wrapping.take(paragraph);
        at = end + 1;
    }
    return std::move(wrapping.lines);
}

}  // namespace reports
