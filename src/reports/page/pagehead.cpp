#include "reports/page/pagehead.h"

#include <algorithm>

#include <fmt/format.h>

namespace reports {

namespace {

constexpr Style TitleStyle{Face::Bold, 24, 0, Role::Artifact};
constexpr Style SelectionStyle{Face::Regular, 12, 0, Role::Artifact};
constexpr Style DistrictStyle{Face::Bold, 10, 0, Role::Artifact};
constexpr Style PrintedStyle{Face::Regular, 8.5F, QuietInk, Role::Artifact};
constexpr Style FootStyle{Face::Regular, 8, QuietInk, Role::Artifact};
constexpr Style FootStrongStyle{Face::Bold, 8, 0, Role::Artifact};
constexpr Style ConfidentialStyle{Face::Bold, 10, 0, Role::Artifact};
constexpr std::string_view Confidential = "Confidential";
constexpr float TitleBaseline = 48.5F;
constexpr float Apart = 24;  ///< between the title and what stands beside it

float widest(const std::vector<Line>& lines) {
    const auto widest = std::ranges::max_element(lines, {}, &Line::width);
    return widest == lines.end() ? 0 : widest->width;
}

/// Builds the frame from the top and from the bottom.
class Framing {
public:
    Framing(const PageSize& size, const Heading& heading) : heading_(heading), size_(size) {
        frame_.left = ListMargin;
        frame_.right = size.width - ListMargin;
    }

    void head();
    void captions(const std::vector<Column>& columns, const Table& table);
    void foot(bool hasLoad);
    [[nodiscard]] PageFrame take() { return std::move(frame_); }

private:
    float district();
    void title(float room);
    void rule(float y, float thick) {
        line(frame_.piece, frame_.left - Hang, y, frame_.right - frame_.left + 2 * Hang, 0, thick,
             thick < 1 ? HairInk : Black);
    }

    const Heading& heading_;
    PageSize size_;
    PageFrame frame_;
    float y_ = 0;  ///< the lowest baseline of the head
};

/// District and time of printing at the right; the width that they take.
float Framing::district() {
    const float most = (frame_.right - frame_.left) * 0.42F;
    const auto names = wrapped(DistrictStyle, heading_.district, most);
    const std::string printedText = printedBy(heading_);
    const auto printed = wrapped(PrintedStyle, printedText, most);
    put(frame_.piece, DistrictStyle, names, frame_.right, 36.5F, 12, Align::Right);
    const float below = 36.5F + 12.2F * static_cast<float>(names.size());
    put(frame_.piece, PrintedStyle, printed, frame_.right, below, 11, Align::Right);
    y_ = below + 11 * static_cast<float>(printed.size() - 1);
    float width = std::max(widest(names), widest(printed));
    if (heading_.confidential) {
        const float tagLeft = frame_.right - width - 14 - tagWidth(Confidential);
        tag(frame_.piece, Confidential, tagLeft, 37, Role::Artifact);
        width = frame_.right - tagLeft;
    }
    return width;
}

void Framing::title(float room) {
    const auto lines = wrapped(TitleStyle, heading_.title, room);
    put(frame_.piece, TitleStyle, lines, frame_.left, TitleBaseline, 28);
    float baseline = TitleBaseline + 28 * static_cast<float>(lines.size() - 1);
    const float used = widest(lines) + Apart;
    auto selection = wrapped(SelectionStyle, heading_.selection, room - used);
    if (lines.size() == 1 && selection.size() == 1) {
        put(frame_.piece, SelectionStyle, selection, frame_.left + used, baseline, 15);
    } else {
        selection = wrapped(SelectionStyle, heading_.selection, room);
        put(frame_.piece, SelectionStyle, selection, frame_.left, baseline + 18, 15);
        baseline += 18 + 15 * static_cast<float>(selection.size() - 1);
    }
    y_ = std::max(y_, baseline);
}

void Framing::head() {
    title(frame_.right - frame_.left - Apart - district());
    y_ += 13.5F;
    rule(y_, 1.4F);
}

void Framing::captions(const std::vector<Column>& columns, const Table& table) {
    std::size_t most = 1;
    for (const ColumnPlace& column : table.columns) {
        most = std::max(most, column.caption.size());
    }
    const float baseline = y_ + 13 + 9 * static_cast<float>(most - 1);
    for (std::size_t at = 0; at < columns.size(); ++at) {
        const ColumnPlace& column = table.columns[at];
        float y = baseline - 9 * static_cast<float>(column.caption.size() - 1);
        for (const std::string& caption : column.caption) {
            put(frame_.piece, table.caption, caption, column.atEnd ? column.right : column.left, y,
                column.atEnd ? Align::Right : Align::Left);
            y += 9;
        }
    }
    rule(baseline + 5.8F, 0.5F);
    frame_.top = baseline + 6;
}

void Framing::foot(bool hasLoad) {
    constexpr std::string_view LoadSign = "Black bar and bold: more riders than seats.";
    const float room = frame_.right - frame_.left - (heading_.confidential ? 180.0F : 100.0F);
    const bool isSaid = !hasLoad || heading_.foot.find("lack bar") != std::string::npos;
    const auto lines = wrapped(FootStyle, heading_.foot, room);
    const bool isBeside =
        !isSaid && lines.back().width + 5 + widthOf(FootStrongStyle, LoadSign) <= room;
    const auto count = static_cast<float>(lines.size() + (isSaid || isBeside ? 0 : 1));
    frame_.numberBaseline = size_.height - 26.5F;
    const float first = frame_.numberBaseline - 10 * (count - 1);
    put(frame_.piece, FootStyle, lines, frame_.left, first, 10);
    if (!isSaid) {
        const float x = isBeside && lines.back().width > 0 ? lines.back().width + 3 : 0;
        put(frame_.piece, FootStrongStyle, LoadSign, frame_.left + x, frame_.numberBaseline);
    }
    if (heading_.confidential) {
        put(frame_.piece, ConfidentialStyle, Confidential, frame_.right - 100,
            frame_.numberBaseline, Align::Right);
    }
    rule(first - 11.5F, 0.5F);
    frame_.bottom = first - 18;
}

}  // namespace

std::string printedBy(const Heading& heading) {
    return heading.user.empty() ? fmt::format("Printed {}", heading.printed)
                                : fmt::format("Printed {} by {}", heading.printed, heading.user);
}

PageFrame frameOf(const PageSize& size, const Heading& heading, const std::vector<Column>& columns,
                  const Table& table) {
    Framing framing(size, heading);
    framing.head();
    framing.captions(columns, table);
    framing.foot(std::ranges::any_of(
        columns, [](const Column& column) { return column.kind == CellKind::Load; }));
    return framing.take();
}

}  // namespace reports
