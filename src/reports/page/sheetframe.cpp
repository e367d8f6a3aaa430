#include "reports/page/sheetframe.h"

#include <algorithm>

#include <fmt/format.h>

#include "reports/page/pagehead.h"

namespace reports {

namespace {

constexpr float PlateTop = 42.5F;
constexpr float PlateHeight = 43.5F;
constexpr float PlateLeast = 109;
constexpr float PlateMost = 200;
constexpr float FactGap = 18;
constexpr float NumberWidth = 96;  ///< of "Page 12 of 24" and what keeps it apart
constexpr Style SheetFootStyle{Face::Regular, 8.8F, QuietInk, Role::Artifact};
constexpr Style NameStyle{Face::Bold, 19, 0, Role::Head};
constexpr Style BusStyle{Face::Bold, 19};
constexpr Style BesideStyle{Face::Regular, 12.5F};
constexpr Style FactStyle{Face::CondensedBold, 13};
constexpr std::string_view Secret = "Confidential";

class SheetFraming {
public:
    SheetFraming(const PageSize& size, const Heading& heading, const SheetHead& head, bool isFirst)
        : size_(size), heading_(heading), head_(head), grid_(size), isFirst_(isFirst) {}

    void head();
    void facts();
    void captions();
    void foot();
    [[nodiscard]] SheetFrame take() { return std::move(frame_); }

private:
    struct Cell {
        std::vector<Line> value;
        float width = 0;
        const Fact* fact = nullptr;
    };

    [[nodiscard]] Style styled(Style style) const {
        style.role = isFirst_ ? style.role : Role::Artifact;
        return style;
    }
    void rule(float y, float thick) {
        line(frame_.piece, grid_.hungLeft(), y, grid_.hungWidth(), 0, thick,
             thick < 1 ? HairInk : Black);
    }
    void lines(const Style& style, const std::string& text, float x, float width, float pitch,
               float& baseline, Align align = Align::Left);
    float plate();
    float bus();
    [[nodiscard]] Cell cellOf(const Fact& fact) const;
    float factRow(const std::vector<Cell>& cells, float top);

    PageSize size_;
    const Heading& heading_;
    const SheetHead& head_;
    SheetGrid grid_;
    bool isFirst_;
    SheetFrame frame_;
    float y_ = PlateTop + PlateHeight;  ///< the head's lower edge
};

/// Puts a text in lines from `baseline` on, which is then the one below the last.
void SheetFraming::lines(const Style& style, const std::string& text, float x, float width,
                         float pitch, float& baseline, Align align) {
    if (text.empty()) {
        return;
    }
    const auto wrappedLines = wrapped(style, text, width);
    put(frame_.piece, styled(style), wrappedLines, x, baseline, pitch, align);
    y_ = std::max(y_, baseline + pitch * static_cast<float>(wrappedLines.size() - 1) + 7);
    baseline += pitch * static_cast<float>(wrappedLines.size());
}

/// The run in white on black; where it ends.
float SheetFraming::plate() {
    Style style{Face::Bold, 29, White, Role::Head};
    while (widthOf(style, head_.plate) > PlateMost - 24 && style.size > 12) {
        style.size -= 0.5F;
    }
    const auto parts = wrapped(style, head_.plate, PlateMost - 24);
    float width = PlateLeast;
    for (const Line& part : parts) {
        width = std::max(width, part.width + 24);
    }
    const float more = static_cast<float>(parts.size() - 1) * style.size;
    rectangle(frame_.piece, grid_.hungLeft(), PlateTop, width, PlateHeight + more, 0, 3);
    put(frame_.piece, styled(style), parts, grid_.hungLeft() + width / 2,
        PlateTop + PlateHeight / 2 + style.size * 0.355F, style.size, Align::Centre);
    y_ = std::max(y_, PlateTop + PlateHeight + more);
    return grid_.hungLeft() + width;
}

/// Bus and route at the right; where they begin.
float SheetFraming::bus() {
    const float most = (grid_.right - grid_.left) * 0.3F;
    float widest = 0;
    for (const Line& part : wrapped(BusStyle, head_.right, most)) {
        widest = std::max(widest, part.width);
    }
    for (const Line& part : wrapped(BesideStyle, head_.rightSub, most)) {
        widest = std::max(widest, part.width);
    }
    return grid_.right - widest;
}

void SheetFraming::head() {
    if (heading_.confidential) {
        tag(frame_.piece, Secret, grid_.right - tagWidth(Secret), 33, Role::Artifact);
    }
    const float from = plate() + 12;
    const float busLeft = bus();
    float baseline = PlateTop + 16;
    lines(NameStyle, head_.title, from, busLeft - 16 - from, 21, baseline);
    baseline -= 1.5F;
    lines(BesideStyle, head_.subtitle, from, busLeft - 16 - from, 15.5F, baseline);
    baseline = PlateTop + 16;
    lines(BusStyle, head_.right, grid_.right, grid_.right - busLeft + 0.1F, 21, baseline,
          Align::Right);
    baseline -= 1.5F;
    lines(BesideStyle, head_.rightSub, grid_.right, grid_.right - busLeft + 0.1F, 15.5F, baseline,
          Align::Right);
    y_ += 15.6F;
    rule(y_, 1.4F);
}

SheetFraming::Cell SheetFraming::cellOf(const Fact& fact) const {
    Cell cell;
    cell.fact = &fact;
    cell.value = wrapped(FactStyle, fact.value, (grid_.right - grid_.left) * 0.6F);
    cell.width = widthOf(LabelStyle, fact.label);
    for (const Line& part : cell.value) {
        cell.width = std::max(cell.width, part.width);
    }
    return cell;
}

/// Facts beside each other from edge to edge; where they end.
float SheetFraming::factRow(const std::vector<Cell>& cells, float top) {
    float rest = grid_.right - grid_.left;
    std::size_t most = 1;
    for (const Cell& cell : cells) {
        rest -= cell.width;
        most = std::max(most, cell.value.size());
    }
    const float gap = cells.size() > 1 ? rest / static_cast<float>(cells.size() - 1) : 0;
    float x = grid_.left;
    for (const Cell& cell : cells) {
        Style label = LabelStyle;
        label.role = Role::Cell;
        put(frame_.piece, label, cell.fact->label, x, top + 13);
        put(frame_.piece, FactStyle, cell.value, x, top + 27.6F, 14.5F);
        x += cell.width + gap;
    }
    return top + 36 + 14.5F * static_cast<float>(most - 1);
}

void SheetFraming::facts() {
    if (!isFirst_ || head_.facts.empty()) {
        return;
    }
    std::vector<Cell> cells;
    float width = 0;
    for (const Fact& fact : head_.facts) {
        Cell cell = cellOf(fact);
        if (!cells.empty() && width + FactGap + cell.width > grid_.right - grid_.left) {
            y_ = factRow(cells, y_) - 4;
            cells.clear();
            width = 0;
        }
        width += (cells.empty() ? 0 : FactGap) + cell.width;
        cells.push_back(std::move(cell));
    }
    y_ = factRow(cells, y_);
    rule(y_, 0.5F);
}

void SheetFraming::captions() {
    const float baseline = y_ + 17;
    const auto caption = [&](std::string_view text, float x, Align align) {
        put(frame_.piece, LabelStyle, text, x, baseline, align);
    };
    caption("TIME", grid_.timeEnd, Align::Right);
    caption("STOP AND WAY TO THE NEXT", grid_.words, Align::Left);
    caption("STUDENTS", grid_.students(), Align::Right);
    caption("ON BUS", grid_.onBus(), Align::Right);
    caption("MILES", grid_.right, Align::Right);
    frame_.top = baseline + 6.5F;
}

void SheetFraming::foot() {
    const float room =
        grid_.right - grid_.left - NumberWidth - (heading_.confidential ? 74.0F : 0.0F);
    const std::string where =
        fmt::format("{}  ·  {}  ·  Run {}", heading_.district, heading_.title, head_.plate);
    const std::string when = heading_.foot.empty()
                                 ? fmt::format("{}.", printedBy(heading_))
                                 : fmt::format("{}. {}", printedBy(heading_), heading_.foot);
    const auto first = wrapped(SheetFootStyle, where, room);
    const auto second = wrapped(SheetFootStyle, when, room);
    const auto count = static_cast<float>(first.size() + second.size());
    const float top = size_.height - 21 - 11.5F * (count - 1);
    put(frame_.piece, SheetFootStyle, first, grid_.left, top, 11.5F);
    put(frame_.piece, SheetFootStyle, second, grid_.left,
        top + 11.5F * static_cast<float>(first.size()), 11.5F);
    frame_.numberBaseline = top + 11.5F * (count - 1) / 2;
    if (heading_.confidential) {
        put(frame_.piece, {Face::Bold, 10, 0, Role::Artifact}, Secret, grid_.right - NumberWidth,
            frame_.numberBaseline, Align::Right);
    }
    rule(top - 12, 0.5F);
    frame_.bottom = top - 22;
}

}  // namespace

SheetFrame sheetFrame(const PageSize& size, const Heading& heading, const SheetHead& head,
                      bool isFirst) {
    SheetFraming framing(size, heading, head, isFirst);
    framing.head();
    framing.facts();
    framing.captions();
    framing.foot();
    return framing.take();
}

}  // namespace reports
