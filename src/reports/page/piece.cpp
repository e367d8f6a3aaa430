#include "reports/page/piece.h"

#include <algorithm>

#include "platform/base/text.h"
#include "reports/page/characters.h"
#include "reports/page/fonts.h"

namespace reports {

namespace {

constexpr Style TagStyle{Face::Bold, 7.5F, White, Role::Cell, 0.4F};
constexpr float TagPadding = 5;

float lettersOf(std::string_view text) {
    return static_cast<float>(
        std::ranges::count_if(text, [](char c) { return !base::continuesCharacter(c); }));
}

float leftOf(float x, float width, Align align) {
    switch (align) {
        case Align::Left:
            return x;
        case Align::Right:
            return x - width;
        case Align::Centre:
            break;
    }
    return x - width / 2;
}

}  // namespace

float widthOf(const Style& style, std::string_view text) {
    const float width = widthOf(style.face, style.size, text);
    return style.spacing == 0 || text.empty() ? width
                                              : width + style.spacing * (lettersOf(text) - 1);
}

std::vector<Line> wrapped(const Style& style, std::string_view text, float width) {
    return wrapped(style.face, style.size, text, width);
}

float put(Page& page, const Style& style, std::string_view text, float x, float baseline,
          Align align, Place place) {
    const float width = widthOf(style, text);
    put(page, style, Line{text, width, startsRightToLeft(text)}, x, baseline, align, place);
    return width;
}

void put(Page& page, const Style& style, const Line& line, float x, float baseline, Align align,
         Place place) {
    if (line.text.empty()) {
        return;
    }
    Box box{leftOf(x, line.width, align), baseline, line.width, style.size, style.face, style.role};
    box.rightToLeft = line.rightToLeft;
    box.ink = style.ink;
    box.spacing = style.spacing;
    box.at = static_cast<std::uint32_t>(page.text.size());
    box.row = place.row;
    box.column = place.column;
    if (isClean(line.text)) {
        page.text += line.text;
    } else {
        page.text += cleaned(line.text);
    }
    box.length = static_cast<std::uint32_t>(page.text.size()) - box.at;
    page.boxes.push_back(box);
}

void put(Page& page, const Style& style, const std::vector<Line>& lines, float x, float baseline,
         float pitch, Align align, Place place) {
    for (const Line& line : lines) {
        put(page, style, line, x, baseline, align, place);
        baseline += pitch;
    }
}

int putParagraph(Page& page, const Style& style, std::string_view text, const Edges& edges,
                 float baseline, float pitch, Place place) {
    const bool isTurned = startsRightToLeft(text);
    const float x = isTurned ? edges.right : edges.left;
    const Align align = isTurned ? Align::Right : Align::Left;
    const float whole = widthOf(style.face, style.size, text);
    if (whole <= edges.right - edges.left && text.find('\n') == std::string_view::npos) {
        put(page, style, Line{text, whole, isTurned}, x, baseline, align, place);
        return 1;
    }
    const auto lines = wrapped(style, text, edges.right - edges.left);
    put(page, style, lines, x, baseline, pitch, align, place);
    return static_cast<int>(lines.size());
}

Shape& rectangle(Page& page, float x, float y, float width, float height, std::uint8_t ink,
                 float corner) {
    Shape& shape = page.shapes.emplace_back();
    shape.ink = ink;
    shape.x = x;
    shape.y = y;
    shape.width = width;
    shape.height = height;
    shape.corner = corner;
    return shape;
}

Shape& line(Page& page, float x, float y, float width, float height, float thick,
            std::uint8_t ink) {
    Shape& shape = rectangle(page, x, y, width, height, ink);
    shape.kind = Shape::Kind::Line;
    shape.filled = false;
    shape.thick = thick;
    return shape;
}

Shape& disc(Page& page, float x, float y, float diameter, std::uint8_t ink) {
    Shape& shape = rectangle(page, x, y, diameter, diameter, ink);
    shape.kind = Shape::Kind::Disc;
    return shape;
}

float tagWidth(std::string_view text) { return widthOf(TagStyle, text) + 2 * TagPadding; }

float tag(Page& page, std::string_view text, float x, float baseline, Role role) {
    const float width = tagWidth(text);
    Style style = TagStyle;
    style.role = role;
    rectangle(page, x, baseline - 10, width, 14, 0, 2);
    put(page, style, text, x + TagPadding, baseline - 0.4F);
    return width;
}

void place(Page& page, const Page& piece, float y) {
    const auto offset = static_cast<std::uint32_t>(page.text.size());
    page.text += piece.text;
    for (Box box : piece.boxes) {
        box.at += offset;
        box.baseline += y;
        page.boxes.push_back(box);
    }
    for (Shape shape : piece.shapes) {
        shape.y += y;
        for (std::size_t at = 1; at < shape.points.size(); at += 2) {
            shape.points[at] += y;
        }
        page.shapes.push_back(std::move(shape));
    }
    for (Mark mark : piece.marks) {
        mark.y += y;
        page.marks.push_back(std::move(mark));
    }
}

}  // namespace reports
