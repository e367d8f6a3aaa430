#include "reports/page/listblock.h"

#include <algorithm>

#include "reports/page/characters.h"
#include "reports/page/fonts.h"

namespace reports {

namespace {

constexpr float RowHeight = 14.6F;
constexpr float LinePitch = 12.4F;
constexpr float LeastSize = 6;  ///< of a number that its column is too narrow for
constexpr double Full = 100;

struct HeadLook {
    float size;
    float height;
    float baseline;
};

HeadLook headLook(std::size_t level) {
    constexpr HeadLook Looks[] = {{12.5F, 23, 18.4F}, {11, 19, 14.6F}, {10, 17, 13}};
    return Looks[std::min<std::size_t>(level, 2)];
}

Block blockOf(Block::Kind kind, float first, float pitch) {
    Block block;
    block.kind = kind;
    block.first = first;
    block.pitch = pitch;
    return block;
}

/// A style in which a number fits its column: as it is, condensed, smaller.
Style fittingNumber(Style style, std::string_view text, float room) {
    if (widthOf(style, text) > room) {
        style.face = style.face == Face::Bold ? Face::CondensedBold : Face::Condensed;
    }
    while (widthOf(style, text) > room && style.size > LeastSize) {
        style.size -= 0.5F;
    }
    return style;
}

}  // namespace

Page linesOf(const Block& block, int from, int count) {
    const float top = from == 0 ? -1 : block.first + block.pitch * (static_cast<float>(from) - 1);
    const float bottom = block.heightOf(from + count);
    const float shift = static_cast<float>(from) * block.pitch;
    Page page;
    for (Box box : block.piece.boxes) {
        const bool isInside = box.baseline > top && box.baseline <= bottom;
        const bool isLast = from + count >= block.lines && box.baseline > bottom;
        if (isInside || isLast) {
            const auto at = static_cast<std::uint32_t>(page.text.size());
            page.text += block.piece.textOf(box);
            box.at = at;
            box.baseline -= shift;
            page.boxes.push_back(box);
        }
    }
    if (from == 0) {
        page.shapes = block.piece.shapes;
        page.marks = block.piece.marks;
    }
    return page;
}

BlockMaker::BlockMaker(const std::vector<Column>& columns, const Table& table, float left,
                       float right)
    : columns_(columns), table_(table), left_(left), right_(right) {
    const auto strong = std::ranges::find(columns, true, &Column::strong);
    firstStrong_ = static_cast<std::size_t>(strong - columns.begin());
}

Block BlockMaker::headBlock(std::size_t level, const std::string& title, const std::string& note,
                            Role role) const {
    const HeadLook look = headLook(level);
    Block block = blockOf(Block::Kind::Head, look.height, look.size * 1.2F);
    const Style titleStyle{Face::Bold, look.size, 0, role};
    const Style noteStyle{Face::Regular, 9.5F, QuietInk, role};
    const float noteWidth = widthOf(noteStyle, note);
    const auto lines = wrapped(titleStyle, title, right_ - left_);
    put(block.piece, titleStyle, lines, left_, look.baseline, block.pitch);
    block.lines = static_cast<int>(lines.size());
    float x = left_ + lines.back().width + (title.empty() ? 0.0F : 8.0F);
    if (x + noteWidth > right_) {
        x = left_;
        ++block.lines;
    }
    const float baseline = look.baseline + block.pitch * static_cast<float>(block.lines - 1);
    put(block.piece, noteStyle, wrapped(noteStyle, note, right_ - x), x, baseline, block.pitch);
    block.level = level;
    block.title = title;
    return block;
}

Block BlockMaker::head(const GroupHead& head) const {
    Block block = headBlock(head.level, head.title, head.note, Role::Head);
    block.above = head.level == 0 ? 4 : 2;
    block.newPage = head.newPage;
    block.piece.marks.push_back({static_cast<std::uint8_t>(head.level), cleaned(head.title), 0});
    return block;
}

Block BlockMaker::continued(std::size_t level, const std::string& title) const {
    const Style style{Face::Bold, headLook(level).size, 0, Role::Artifact};
    const auto first = wrapped(style, title, right_ - left_ - 60).front();
    return headBlock(level, std::string(first.text), "continued", Role::Artifact);
}

Style BlockMaker::rowStyle(std::size_t column) const {
    const Column& of = columns_[column];
    Style style{of.strong ? Face::Bold : Face::Regular, 10 * table_.scale};
    if (of.condensed || table_.narrow) {
        style.face = of.strong ? Face::CondensedBold : Face::Condensed;
    }
    if (of.strong && column == firstStrong_) {
        style.size *= 1.05F;
    }
    return style;
}

void BlockMaker::number(Block& block, std::size_t column, const std::string& text, Style style,
                        std::uint32_t row) const {
    const ColumnPlace& place = table_.columns[column];
    const bool isLoad = columns_[column].kind == CellKind::Load;
    const float room = place.right - place.left - (isLoad ? LoadBar + 10 : 0);
    const Place of{row, static_cast<std::uint16_t>(column)};
    const float width = widthOf(style, text);
    if (width <= room) {
        put(block.piece, style, Line{text, width}, place.right, rowBaseline(), Align::Right, of);
        return;
    }
    style = fittingNumber(style, text, room);
    const auto lines = wrapped(style, text, place.right - place.left);
    put(block.piece, style, lines, place.right, rowBaseline(), block.pitch, Align::Right, of);
    block.lines = std::max(block.lines, static_cast<int>(lines.size()));
}

void BlockMaker::days(Block& block, std::size_t column, const std::string& text, Style style,
                      std::uint32_t row) const {
    const auto characters = charactersOf(text);
    const ColumnPlace& place = table_.columns[column];
    const float pitch = std::min(
        0.9F * style.size, (place.right - place.left) / static_cast<float>(std::max<std::size_t>(
                                                            characters.codes.size(), 1)));
    style.face = Face::Medium;
    style.size = std::min(0.88F * style.size, pitch / 0.9F);
    float x = place.left + pitch / 2;
    for (std::size_t at = 0; at < characters.codes.size(); ++at, x += pitch) {
        const auto from = characters.starts[at];
        put(block.piece, style,
            std::string_view(text).substr(from, characters.starts[at + 1] - from), x, rowBaseline(),
            Align::Centre, {row, static_cast<std::uint16_t>(column)});
    }
}

void BlockMaker::load(Block& block, std::size_t column, double percent) const {
    constexpr float Height = 6.4F;
    const float top = rowBaseline() - 6.5F;
    constexpr double Most = 125;
    const float left = table_.columns[column].left;
    const auto filled = static_cast<float>(std::clamp(percent, 0.0, Most) / Full) * LoadBar;
    if (percent < Full) {
        rectangle(block.piece, left + filled, top, LoadBar - filled, Height, 217);
    }
    rectangle(block.piece, left, top, filled, Height, percent > Full ? 0 : 115);
    line(block.piece, left + LoadBar, top - 2, 0, Height + 4, 0.9F);
}

void BlockMaker::cell(Block& block, std::size_t column, const base::Value& value, Style style,
                      std::uint32_t row) const {
    const std::string text = cellText(columns_[column].kind, value);
    if (text.empty()) {
        return;
    }
    const CellKind kind = columns_[column].kind;
    constexpr std::size_t MostDays = 7;
    if (kind == CellKind::Days && text.size() <= MostDays) {
        days(block, column, text, style, row);
        return;
    }
    if (kind != CellKind::Text && kind != CellKind::Days) {
        number(block, column, text, style, row);
        return;
    }
    const ColumnPlace& place = table_.columns[column];
    const int lines =
        putParagraph(block.piece, style, text, {place.left, place.right}, rowBaseline(),
                     block.pitch, {row, static_cast<std::uint16_t>(column)});
    block.lines = std::max(block.lines, lines);
}

Block BlockMaker::row(const Row& row, std::uint32_t number) const {
    Block block = blockOf(Block::Kind::Row, RowHeight * table_.scale, LinePitch * table_.scale);
    block.isBanded = true;
    const std::size_t count = std::min(row.cells.size(), columns_.size());
    block.piece.boxes.reserve(count + 2);
    block.piece.text.reserve(count * 16);
    for (std::size_t column = 0; column < count; ++column) {
        const base::Value& value = row.cells[column];
        Style style = rowStyle(column);
        if (columns_[column].kind == CellKind::Load && !value.isNull()) {
            load(block, column, value.asNumber());
            style.face = value.asNumber() > Full ? boldFace() : style.face;
        }
        cell(block, column, value, style, number);
    }
    return block;
}

Block BlockMaker::remark(const Remark& remark) const {
    Block block = blockOf(Block::Kind::Row, RowHeight, LinePitch);
    block.lines =
        putParagraph(block.piece, {}, remark.text, {left_, right_}, rowBaseline(), LinePitch, {});
    return block;
}

void BlockMaker::addRemark(Block& block, const Remark& remark, std::uint32_t number) const {
    const std::size_t under = columns_.size() > 1 ? 1 : 0;
    const float left = table_.columns.empty() ? left_ : table_.columns[under].left;
    const Style style{Face::Regular, 9.5F * table_.scale, QuietInk};
    block.lines += putParagraph(block.piece, style, remark.text, {left, right_},
                                rowBaseline() + block.pitch * static_cast<float>(block.lines),
                                block.pitch, {number, static_cast<std::uint16_t>(columns_.size())});
}

/// The title beside the first value, or above all of them where it is too long for that.
void BlockMaker::totalsTitle(Block& block, const Totals& totals, const Style& style,
                             float baseline) const {
    const auto valued = std::ranges::find_if(
        totals.cells, [](const base::Value& value) { return !value.isNull(); });
    const auto first =
        std::min(static_cast<std::size_t>(valued - totals.cells.begin()), columns_.size());
    const bool isBehind = totals.level && first > 1 && columns_.size() > 1;
    const float left = isBehind ? table_.columns[1].left : left_;
    const float right = first >= columns_.size() ? right_ : table_.columns[first].left - 12;
    const auto beside = wrapped(style, totals.title, std::max(right - left, 1.0F));
    if (beside.size() == 1) {
        put(block.piece, style, beside, left, baseline, block.pitch);
        return;
    }
    const auto above = wrapped(style, totals.title, right_ - left_);
    put(block.piece, style, above, left_, baseline, block.pitch);
    block.lines += static_cast<int>(above.size());
}

Block BlockMaker::totals(const Totals& totals) const {
    const bool isWhole = !totals.level;
    const std::uint8_t ink = isWhole ? White : Black;
    const float size = 10 * table_.scale;
    Block block = blockOf(Block::Kind::Totals, isWhole ? 18 : RowHeight * table_.scale,
                          LinePitch * table_.scale);
    block.level = totals.level;
    block.above = isWhole ? 10 : 0;
    const float lower = isWhole ? 12.2F - rowBaseline() : 0;
    totalsTitle(block, totals, {isWhole ? Face::Bold : Face::Italic, size, ink},
                rowBaseline() + lower);
    Block values = blockOf(Block::Kind::Totals, block.first, block.pitch);
    const std::size_t count = std::min(totals.cells.size(), columns_.size());
    for (std::size_t column = 0; column < count; ++column) {
        cell(values, column, totals.cells[column], {boldFace(), size, ink}, 0);
    }
    const auto titleLines = static_cast<float>(block.lines - 1);
    place(block.piece, values.piece, lower + titleLines * block.pitch);
    block.lines += values.lines - 1;
    if (isWhole) {
        rectangle(block.piece, left_ - Hang, 0, right_ - left_ + 2 * Hang, block.height(), Black,
                  2);
    } else {
        line(block.piece, left_ - Hang, 0.3F, right_ - left_ + 2 * Hang, 0, 0.7F);
    }
    return block;
}

Block BlockMaker::nothing() const {
    Block block = blockOf(Block::Kind::Totals, 30, 0);
    put(block.piece, {Face::Italic, 11, QuietInk}, "Nothing found.", left_, 20);
    return block;
}

}  // namespace reports
