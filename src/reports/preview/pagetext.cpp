#include "reports/preview/pagetext.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "platform/base/fold.h"
#include "platform/base/text.h"
#include "reports/page/fonts.h"

namespace reports {

namespace {

using base::characterSize;
using base::lowered;

constexpr float Above = 0.95F;  // of a line over its baseline, in sizes
constexpr float Below = 0.27F;

bool isText(const Box& box) { return box.role != Role::Artifact && box.length > 0; }

bool isLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (lowered(c) >= 'a' && lowered(c) <= 'z');
}

/// Where an ASCII text stands in another one from `start` on, without regard to case.
std::size_t findAscii(std::string_view in, std::string_view loweredText, std::size_t start = 0) {
    const char first = loweredText.front();
    for (std::size_t at = start; at + loweredText.size() <= in.size(); ++at) {
        if (lowered(in[at]) == first &&
            std::equal(loweredText.begin() + 1, loweredText.end(), in.begin() + at + 1,
                       [](char sought, char c) { return sought == lowered(c); })) {
            return at;
        }
    }
    return std::string_view::npos;
}

/// The bytes of so many characters.
std::size_t bytesOf(std::string_view text, std::size_t characters) {
    std::size_t bytes = 0;
    for (; characters > 0 && bytes < text.size(); --characters) {
        bytes += characterSize(text.substr(bytes));
    }
    return bytes;
}

std::size_t charactersIn(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return !base::continuesCharacter(c); }));
}

/// What is looked for, folded once.
class Sought {
public:
    explicit Sought(std::string_view text) : text_(base::folded(text)) {
        if (base::isAscii(text)) {
            text_ = lowered(text);
            isAscii_ = true;
        }
        const auto first = text_.substr(0, characterSize(text_));
        firstLower_ = base::lowerCase(first);
        firstUpper_ = base::upperCase(first);
        const auto isOther = [](char c) { return !isLetterOrDigit(c); };
        for (auto from = text_.begin(); from != text_.end();) {
            const auto to = std::find_if(from, text_.end(), isOther);
            if (to - from > static_cast<std::ptrdiff_t>(word_.size())) {
                word_ = lowered(std::string(from, to));
            }
            from = std::find_if_not(to, text_.end(), isOther);
        }
    }

    /// False where no line of the page can have it: spares looking at them one by one.
    [[nodiscard]] bool mayBeOn(const Page& page) const {
        if (!word_.empty()) {
            return findAscii(page.text, word_) != std::string_view::npos;
        }
        const auto has = [&](const std::string& letter) {
            return page.text.find(letter) != std::string::npos;
        };
        return isAscii_ || has(firstLower_) || has(firstUpper_);
    }

    struct Found {
        std::size_t from;
        std::size_t to;
    };
    /// The first one in a line from a byte on.
    [[nodiscard]] std::optional<Found> in(std::string_view line, std::size_t start) const {
        if (isAscii_) {
            const auto at = findAscii(line, text_, start);
            return at == std::string_view::npos ? std::nullopt
                                                : std::optional<Found>({at, at + text_.size()});
        }
        const auto rest = line.substr(start);
        const std::string folded = base::folded(rest);
        const auto at = folded.find(text_);
        if (at == std::string::npos) {
            return std::nullopt;
        }
        const auto from =
            start + bytesOf(rest, charactersIn(std::string_view(folded).substr(0, at)));
        return Found{from, from + bytesOf(line.substr(from), charactersIn(text_))};
    }

private:
    std::string text_;
    std::string word_;  ///< the longest run of ASCII letters and digits
    std::string firstLower_, firstUpper_;
    bool isAscii_ = false;
};

/// Whether a box goes on with the line of the one before it.
bool continuesLine(const Box& before, const Box& box) {
    constexpr float MostBetweenWords = 0.6F;  // in sizes
    const float gap =
        before.rightToLeft ? before.x - (box.x + box.width) : box.x - (before.x + before.width);
    return box.baseline == before.baseline && box.row == before.row &&
           box.column == before.column && std::abs(gap) < MostBetweenWords * box.size;
}

/// Boxes that are read as one line.
class Line {
public:
    /// From a box on; reads over those that are no text.
    Line(const Page& page, std::size_t first) : page_(page), first_(first), end_(first + 1) {
        while (end_ < page.boxes.size() && isText(page.boxes[end_]) &&
               continuesLine(page.boxes[end_ - 1], page.boxes[end_])) {
            ++end_;
        }
        if (end_ > first + 1) {
            join();
        }
    }

    [[nodiscard]] std::string_view text() const {
        return starts_.empty() ? page_.textOf(page_.boxes[first_]) : std::string_view(joined_);
    }
    [[nodiscard]] std::size_t end() const { return end_; }
    /// The box and the byte in it; `isEnd` takes the end of one box for that, not for the next one.
    [[nodiscard]] TextPlace placeOf(std::size_t page, std::size_t byte, bool isEnd) const {
        std::size_t box = 0;
        while (box + 1 < starts_.size() && starts_[box + 1] + (isEnd ? 1 : 0) <= byte) {
            ++box;
        }
        const std::size_t start = starts_.empty() ? 0 : starts_[box];
        const std::size_t length = page_.boxes[first_ + box].length;
        return {page, first_ + box, std::min(byte - start, length)};
    }

private:
    void join() {
        constexpr float LeastBetweenWords = 0.12F;
        for (std::size_t i = first_; i < end_; ++i) {
            const Box& box = page_.boxes[i];
            if (i > first_) {
                const Box& before = page_.boxes[i - 1];
                const float gap = box.rightToLeft ? before.x - (box.x + box.width)
                                                  : box.x - (before.x + before.width);
                const bool apart = gap > LeastBetweenWords * box.size && !joined_.ends_with(' ') &&
                                   !page_.textOf(box).starts_with(' ');
                joined_ += apart ? " " : "";
            }
            starts_.push_back(joined_.size());
            joined_ += page_.textOf(box);
        }
    }

    const Page& page_;
    std::size_t first_;
    std::size_t end_;
    std::vector<std::size_t> starts_;  ///< of each box in joined_; empty for a single one
    std::string joined_;
};

void findOn(const Page& page, std::size_t number, const Sought& sought,
            std::vector<TextRange>& found) {
    for (std::size_t box = 0; box < page.boxes.size();) {
        if (!isText(page.boxes[box])) {
            ++box;
            continue;
        }
        const Line line(page, box);
        for (auto hit = sought.in(line.text(), 0); hit; hit = sought.in(line.text(), hit->to)) {
            found.push_back(
                {line.placeOf(number, hit->from, false), line.placeOf(number, hit->to, true)});
        }
        box = line.end();
    }
}

/// A letter of a box: its bytes, and where it stands on the page.
struct Letter {
    std::size_t from;
    std::size_t to;
    float left;
    float right;
};

/// In the order of their bytes.
std::vector<Letter> lettersOf(const Page& page, const Box& box) {
    const auto shaped = Fonts::instance().shape(box.face, page.textOf(box), box.rightToLeft);
    std::vector<Letter> letters;
    float spaced = 0;
    for (const GlyphRun& run : shaped.runs) {
        for (const Glyph& glyph : run.glyphs) {
            const bool isNext = !letters.empty() && letters.back().from != glyph.cluster;
            spaced += isNext ? box.spacing : 0;
            const float left = box.x + glyph.x * box.size + spaced;
            letters.push_back(
                {glyph.cluster, box.length, left, left + glyph.advance * box.size + box.spacing});
        }
    }
    std::ranges::stable_sort(letters, {}, &Letter::from);
    for (std::size_t i = letters.size(); i-- > 1;) {
        letters[i - 1].to =
            letters[i].from == letters[i - 1].from ? letters[i].to : letters[i].from;
    }
    return letters;
}

float topOf(const Box& box) { return box.baseline - Above * box.size; }
float bottomOf(const Box& box) { return box.baseline + Below * box.size; }

/// How far a point is from a stretch; 0 within it.
float distance(float point, float from, float to) {
    return std::max({from - point, point - to, 0.0F});
}

std::size_t byteAt(const Page& page, const Box& box, float x) {
    const auto letters = lettersOf(page, box);
    const auto nearest = std::ranges::min_element(
        letters, {}, [&](const Letter& letter) { return distance(x, letter.left, letter.right); });
    if (nearest == letters.end()) {
        return 0;
    }
    const bool inRightHalf = x > (nearest->left + nearest->right) / 2;
    return inRightHalf == box.rightToLeft ? nearest->from : nearest->to;
}

/// The bytes of a box that a range takes; empty where it takes none.
Sought::Found takenOf(const Page& page, std::size_t number, std::size_t box,
                      const TextRange& range) {
    const std::size_t length = page.boxes[box].length;
    const TextPlace begin{number, box, 0};
    const TextPlace end{number, box, length};
    if (range.isEmpty() || range.to <= begin || end <= range.from) {
        return {0, 0};
    }
    return {range.from <= begin ? 0 : range.from.byte, end <= range.to ? length : range.to.byte};
}

/// What stands between two boxes in a copy.
std::string_view between(const Box& before, const Box& box) {
    constexpr float LeastBetweenWords = 0.12F;
    if (box.row != before.row || (box.row == 0 && box.baseline != before.baseline)) {
        return "\n";
    }
    if (box.column != before.column) {
        return "\t";
    }
    const float gap = box.x - (before.x + before.width);
    const bool joins =
        box.baseline == before.baseline && std::abs(gap) <= LeastBetweenWords * box.size;
    return joins ? "" : " ";
}

}  // namespace

std::vector<TextRange> findText(const std::vector<Page>& pages, std::string_view text,
                                std::size_t firstPage) {
    std::vector<TextRange> found;
    if (text.empty()) {
        return found;
    }
    const Sought sought(text);
    for (std::size_t number = firstPage; number < pages.size(); ++number) {
        if (sought.mayBeOn(pages[number])) {
            findOn(pages[number], number, sought, found);
        }
    }
    return found;
}

TextPlace placeAt(const std::vector<Page>& pages, std::size_t page, float x, float y) {
    const auto& boxes = pages[page].boxes;
    std::size_t nearest = boxes.size();
    std::pair least(std::numeric_limits<float>::max(), 0.0F);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const Box& box = boxes[i];
        const std::pair apart(distance(y, topOf(box), bottomOf(box)),
                              distance(x, box.x, box.x + box.width));
        if (isText(box) && apart < least) {
            nearest = i;
            least = apart;
        }
    }
    if (nearest == boxes.size()) {
        return {page, 0, 0};
    }
    return {page, nearest, byteAt(pages[page], boxes[nearest], x)};
}

TextRange wordAt(const std::vector<Page>& pages, TextPlace place) {
    const Page& page = pages[place.page];
    if (place.box >= page.boxes.size()) {
        return {place, place};
    }
    const auto text = page.textOf(page.boxes[place.box]);
    const auto before = place.byte == 0 ? std::string_view::npos : text.rfind(' ', place.byte - 1);
    const auto behind = std::min(text.find(' ', place.byte), text.size());
    const std::size_t from = before == std::string_view::npos ? 0 : before + 1;
    return {{place.page, place.box, from}, {place.page, place.box, behind}};
}

TextRange wholeText(const std::vector<Page>& pages) {
    return pages.empty() ? TextRange{} : TextRange{{}, {pages.size(), 0, 0}};
}

std::vector<Area> areasOf(const std::vector<Page>& pages, const TextRange& range,
                          std::size_t page) {
    std::vector<Area> areas;
    if (page < range.from.page || page > range.to.page) {
        return areas;
    }
    const Page& on = pages[page];
    for (std::size_t i = 0; i < on.boxes.size(); ++i) {
        const Box& box = on.boxes[i];
        const auto [from, to] = takenOf(on, page, i, range);
        if (from == to || !isText(box)) {
            continue;
        }
        float left = std::numeric_limits<float>::max();
        float right = 0;
        for (const Letter& letter : lettersOf(on, box)) {
            if (letter.from < to && letter.to > from) {
                left = std::min(left, letter.left);
                right = std::max(right, letter.right);
            }
        }
        areas.push_back({left, topOf(box), right - left, bottomOf(box) - topOf(box)});
    }
    return areas;
}

std::string textBetween(const std::vector<Page>& pages, const TextRange& range) {
    std::string text;
    const Box* before = nullptr;
    std::size_t pageBefore = range.from.page;
    for (std::size_t page = range.from.page; page < pages.size() && page <= range.to.page; ++page) {
        for (std::size_t i = 0; i < pages[page].boxes.size(); ++i) {
            const Box& box = pages[page].boxes[i];
            const auto [from, to] = takenOf(pages[page], page, i, range);
            if (from == to || !isText(box)) {
                continue;
            }
            text += before == nullptr ? "" : page != pageBefore ? "\n" : between(*before, box);
            text += pages[page].textOf(box).substr(from, to - from);
            before = &box;
            pageBefore = page;
        }
    }
    return text;
}

}  // namespace reports
