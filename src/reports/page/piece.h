#pragma once

#include <string_view>
#include <vector>

#include "reports/page/page.h"
#include "reports/page/wrap.h"

/// How texts and shapes get onto a page, or onto a piece of one that is placed later.
namespace reports {

struct Style {
    Face face = Face::Regular;
    float size = 10;
    std::uint8_t ink = 0;
    Role role = Role::Cell;
    float spacing = 0;
};

/// Greys of the pages: of labels, of what is said beside, of thin rules.
inline constexpr std::uint8_t Black = 0;
inline constexpr std::uint8_t White = 255;
inline constexpr std::uint8_t LabelInk = 77;
inline constexpr std::uint8_t QuietInk = 64;
inline constexpr std::uint8_t HairInk = 90;

/// Labels in capitals, apart from each other.
inline constexpr Style LabelStyle{Face::Medium, 7.5F, LabelInk, Role::Artifact, 0.6F};

enum class Align { Left, Right, Centre };

/// Which of a report's cells a text is.
struct Place {
    std::uint32_t row = 0;
    std::uint16_t column = 0;
};

/// A text's width with what stands between its letters, in points.
[[nodiscard]] float widthOf(const Style& style, std::string_view text);

[[nodiscard]] std::vector<Line> wrapped(const Style& style, std::string_view text, float width);

/// Puts one line of text; `x` is its left edge, right edge or middle. Returns its width.
float put(Page& page, const Style& style, std::string_view text, float x, float baseline,
          Align align = Align::Left, Place place = {});
/// The same where the width is known.
void put(Page& page, const Style& style, const Line& line, float x, float baseline,
         Align align = Align::Left, Place place = {});

/// Puts lines one below the other, the first on `baseline`.
void put(Page& page, const Style& style, const std::vector<Line>& lines, float x, float baseline,
         float pitch, Align align = Align::Left, Place place = {});

struct Edges {
    float left = 0;
    float right = 0;
};

/// Puts a text between two edges, from where lines of its direction begin; in how many lines.
int putParagraph(Page& page, const Style& style, std::string_view text, const Edges& edges,
                 float baseline, float pitch, Place place);

Shape& rectangle(Page& page, float x, float y, float width, float height, std::uint8_t ink,
                 float corner = 0);
Shape& line(Page& page, float x, float y, float width, float height, float thick,
            std::uint8_t ink = 0);
Shape& disc(Page& page, float x, float y, float diameter, std::uint8_t ink = 0);

/// White words on black, as "LEFT SIDE", from `x` on; its width in points.
float tag(Page& page, std::string_view text, float x, float baseline, Role role);
[[nodiscard]] float tagWidth(std::string_view text);

/// Places a piece on a page, its top at `y`.
void place(Page& page, const Page& piece, float y);

}  // namespace reports
