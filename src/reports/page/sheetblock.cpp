#include "reports/page/sheetblock.h"

#include <algorithm>

#include <fmt/format.h>

#include "reports/page/waysigns.h"

namespace reports {

namespace {

constexpr std::uint8_t BandInk = 232;
constexpr float BandLine = 17;        ///< of each further line of a band
constexpr std::size_t BandLines = 4;  ///< the rest of a longer text stands below the band
constexpr float NamePitch = 12.4F;
constexpr std::size_t NameColumns = 4;
constexpr std::string_view LeftSide = "LEFT SIDE";
constexpr float DirectionSize = 11.5F;

enum Column : std::uint16_t { Time, Number, Words, Students, OnBus, Id };

Place placeOf(std::uint32_t row, Column column) { return {row, column}; }

/// "+4", "−64", "0".
std::string signedText(int count) {
    return count == 0  ? "0"
           : count > 0 ? fmt::format("+{}", count)
                       : fmt::format("\u2212{}", -count);
}

/// Smaller where a narrow place asks for it.
Style fitted(Style style, std::string_view text, float room) {
    while (widthOf(style, text) > room && style.size > 5) {
        style.size -= 0.5F;
    }
    return style;
}

}  // namespace

std::vector<Span> spansOf(const std::vector<SheetWay::Piece>& pieces, const Style& style) {
    std::vector<Span> spans;
    for (const SheetWay::Piece& piece : pieces) {
        Style of = style;
        of.face = piece.strong ? Face::Bold : style.face;
        spans.push_back({piece.text, of});
    }
    return spans;
}

SheetBlock& SheetBlockMaker::addBlock(float height, float above, bool withNext) {
    SheetBlock& block = blocks_.emplace_back();
    block.height = height;
    block.above = above;
    block.withNext = withNext;
    return block;
}

void SheetBlockMaker::addLines(const std::vector<FlowLine>& lines, float x, float pitch,
                               bool withNext, std::uint32_t row) {
    for (std::size_t at = 0; at < lines.size(); ++at) {
        const bool isLast = at + 1 == lines.size();
        SheetBlock& block = addBlock(pitch, 0, !isLast || withNext);
        put(block.piece, lines[at], x, pitch * 0.74F, placeOf(row, Words));
    }
}

/// "5:23 AM" in two sizes, each part ended where those above it end.
void SheetBlockMaker::time(Page& page, const base::Value& time, float size, float baseline,
                           std::uint8_t ink, std::uint32_t row) const {
    const std::string text = cellText(CellKind::Time, time);
    const auto blank = std::min(text.find(' '), text.size());
    const auto half = std::string_view(text).substr(std::min(blank + 1, text.size()));
    const Style halfStyle{Face::Medium, 8.5F, ink};
    const float halfRoom = widthOf(halfStyle, "AM");
    put(page, {Face::Bold, size, ink}, std::string_view(text).substr(0, blank),
        grid_.timeEnd - halfRoom - 4, baseline, Align::Right, placeOf(row, Time));
    put(page, halfStyle, half, grid_.timeEnd, baseline, Align::Right, placeOf(row, Time));
}

/// Students, on the bus and the stop's number; where the words before them must end.
float SheetBlockMaker::figures(Page& page, const SheetStop& stop, float baseline,
                               std::uint32_t row) const {
    const std::uint8_t ink = stop.kind == SheetStop::Kind::School ? White : 0;
    const std::string students = stop.students ? signedText(*stop.students) : std::string();
    const float width = put(page, {Face::Bold, 14, ink}, students, grid_.students(), baseline,
                            Align::Right, placeOf(row, Students));
    if (stop.onBus) {
        put(page, {Face::Regular, 14, ink}, std::to_string(*stop.onBus), grid_.onBus(), baseline,
            Align::Right, placeOf(row, OnBus));
    }
    if (!stop.id.empty()) {
        const std::string id = fmt::format("no. {}", stop.id);
        const std::uint8_t idInk = ink == White ? White : QuietInk;
        const Style style =
            fitted({Face::Regular, 8.5F, idInk}, id, grid_.right - grid_.onBus() - 6);
        put(page, style, id, grid_.right, baseline, Align::Right, placeOf(row, Id));
    }
    return grid_.students() - std::max(width, 24.0F) - 10;
}

/// The sign behind the words, or below them where they leave no room.
void SheetBlockMaker::leftSide(SheetBlock& block, float x, float room, float baseline) const {
    if (x + tagWidth(LeftSide) > room) {
        x = 0;
        baseline += BandLine;
        block.height += BandLine;
    }
    tag(block.piece, LeftSide, grid_.words + x, baseline - 1, Role::Cell);
}

void SheetBlockMaker::addBand(const SheetStop& stop, std::uint32_t row) {
    const bool isSchool = stop.kind == SheetStop::Kind::School;
    const std::uint8_t ink = isSchool ? White : 0;
    const float baseline = density_.band / 2 + 5.6F;
    SheetBlock& block = addBlock(density_.band, density_.above, !isSchool);
    Page& page = block.piece;
    time(page, stop.time, 16.5F, baseline + 0.5F, ink, row);
    if (!isSchool && stop.number > 0) {
        const std::string number = std::to_string(stop.number);
        put(page, fitted({Face::Bold, 9, White}, number, 13.5F), number, grid_.way,
            density_.band / 2 + 3.2F, Align::Centre, placeOf(row, Number));
    }
    Page numbers;
    const float room = figures(numbers, stop, baseline, row) - grid_.words;
    const std::string place = stop.place + (stop.corner.empty() ? "" : "  ");
    const std::vector<Span> words = {{place, {Face::Bold, 14, ink}},
                                     {stop.corner, {Face::Regular, 11.5F, ink}}};
    const auto lines = flowed(words, room);
    const auto inBand = std::min(lines.size(), BandLines);
    for (std::size_t at = 0; at < inBand; ++at) {
        put(page, lines[at], grid_.words, baseline + BandLine * static_cast<float>(at),
            placeOf(row, Words));
    }
    const float more = BandLine * static_cast<float>(std::max<std::size_t>(inBand, 1) - 1);
    block.height += more;
    rectangle(page, grid_.hungLeft(), 0, grid_.hungWidth(), block.height, isSchool ? 0 : BandInk,
              3);
    if (stop.leftSide) {
        leftSide(block, inBand == 0 ? 0 : widthOf(lines[inBand - 1]) + 10, room, baseline + more);
        page.shapes.front().height = block.height;
    }
    reports::place(page, numbers, 0);
    block.node = Node{stop.kind, stop.number, density_.band / 2};
    if (inBand < lines.size()) {
        addLines({lines.begin() + BandLines, lines.end()}, grid_.words, BandLine, true, row);
    }
}

void SheetBlockMaker::addEmpty(const SheetStop& stop, std::uint32_t row) {
    SheetBlock& block = addBlock(density_.band - 2, density_.above, false);
    Page& page = block.piece;
    const float baseline = density_.band / 2 + 3;
    time(page, stop.time, 14, baseline, 0, row);
    const std::string miles = cellText(CellKind::Decimal, stop.miles);
    const Style style{Face::Italic, 12};
    const std::string sentence = stop.place + (stop.corner.empty() ? "" : "  " + stop.corner);
    const auto lines = flowed({{sentence, style}}, grid_.right - grid_.words - 50);
    for (std::size_t at = 0; at < lines.size(); ++at) {
        put(page, lines[at], grid_.words, baseline + 15 * static_cast<float>(at),
            placeOf(row, Words));
    }
    put(page, {Face::Regular, 12}, miles, grid_.right, baseline, Align::Right, placeOf(row, Id));
    block.height += 15 * static_cast<float>(std::max<std::size_t>(lines.size(), 1) - 1);
    block.node = Node{stop.kind, 0, baseline - 4.3F};
}

void SheetBlockMaker::addNames(const std::vector<std::string>& names, std::uint32_t row) {
    const float width = (grid_.right - grid_.words) / NameColumns;
    const Style style{Face::Condensed, 10};
    const std::size_t rows = (names.size() + NameColumns - 1) / NameColumns;
    for (std::size_t at = 0; at < rows; ++at) {
        SheetBlock& block = addBlock(NamePitch, at == 0 ? 3 : 0, true);
        std::size_t most = 1;
        for (std::size_t column = 0; at + column * rows < names.size(); ++column) {
            const auto lines = wrapped(style, names[at + column * rows], width - 8);
            put(block.piece, style, lines, grid_.words + width * static_cast<float>(column), 9.6F,
                NamePitch - 1.4F, Align::Left, placeOf(row, Words));
            most = std::max(most, lines.size());
        }
        block.height += (NamePitch - 1.4F) * static_cast<float>(most - 1);
    }
}

void SheetBlockMaker::addNote(const std::string& note, std::uint32_t row) {
    const auto lines = flowed({{note, {Face::Italic, DirectionSize}}}, grid_.right - grid_.words);
    const std::size_t first = blocks_.size();
    addLines(lines, grid_.words, density_.way - 0.5F, true, row);
    if (first < blocks_.size()) {
        blocks_[first].above = 2;
    }
}

void SheetBlockMaker::add(const SheetStop& stop, std::uint32_t row) {
    if (isBehindBand_) {
        blocks_.back().withNext = false;
    }
    if (stop.kind == SheetStop::Kind::Empty) {
        addEmpty(stop, row);
    } else {
        addBand(stop, row);
    }
    addNames(stop.names, row);
    addNote(stop.note, row);
    isBehindBand_ = stop.kind == SheetStop::Kind::Stop;
    if (!isBehindBand_) {
        blocks_.back().withNext = false;
    }
}

void SheetBlockMaker::add(const SheetWay& way, std::uint32_t row) {
    const std::string miles = cellText(CellKind::Decimal, way.miles);
    const Style style{Face::Regular, DirectionSize};
    const float milesWidth = std::max(widthOf(style, miles), 20.0F);
    auto lines =
        flowed(spansOf(way.pieces, style), grid_.right - grid_.directions - milesWidth - 10);
    if (lines.empty()) {
        lines.emplace_back();
    }
    const std::size_t first = blocks_.size();
    addLines(lines, grid_.directions, density_.way, false, row);
    SheetBlock& block = blocks_[first];
    block.above = isBehindBand_ ? density_.below : 0;
    const float baseline = density_.way * 0.74F;
    waySign(block.piece, way.sign, grid_.words, baseline);
    put(block.piece, style, miles, grid_.right, baseline, Align::Right, placeOf(row, Id));
    isBehindBand_ = false;
}

void SheetBlockMaker::add(const SheetRemark& remark, std::uint32_t row) {
    if (isBehindBand_) {
        blocks_.back().withNext = false;
        isBehindBand_ = false;
    }
    const Style style{Face::Regular, remark.quiet ? 10.0F : 12.0F, remark.quiet ? QuietInk : Black};
    const std::size_t first = blocks_.size();
    addLines(flowed(spansOf(remark.pieces, style), grid_.right - grid_.words), grid_.words,
             remark.quiet ? 14.5F : 16.5F, false, row);
    if (first < blocks_.size()) {
        blocks_[first].above = remark.quiet ? 1 : 4;
    }
}

}  // namespace reports
