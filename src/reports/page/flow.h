#pragma once

#include <string_view>
#include <vector>

#include "reports/page/piece.h"

namespace reports {

/// Words of one look within a sentence.
struct Span {
    std::string_view text;
    Style style;
};

/// What stands of one span on one line.
struct FlowPart {
    Style style;
    Line line;
    float x = 0;  ///< from where the line begins
};

using FlowLine = std::vector<FlowPart>;

/// A sentence of several looks in lines of at most that width, broken as wrapped() does. No line
/// where there is no word.
[[nodiscard]] std::vector<FlowLine> flowed(const std::vector<Span>& spans, float width);

/// How wide a line is, in points.
[[nodiscard]] float widthOf(const FlowLine& line);

void put(Page& page, const FlowLine& line, float x, float baseline, Place place);

}  // namespace reports
