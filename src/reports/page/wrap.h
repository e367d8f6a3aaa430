#pragma once

#include <string_view>
#include <vector>

#include "reports/page/page.h"

namespace reports {

struct Line {
    std::string_view text;
    float width = 0;           ///< points
    bool rightToLeft = false;  ///< as the whole text
};

/// A text in lines of at most that width, in points: broken at line ends and blanks, and inside a
/// word, between letters, where it is wider than a line. An empty text is one line.
[[nodiscard]] std::vector<Line> wrapped(Face face, float size, std::string_view text, float width);

/// How much of a word a line of that width holds, in bytes, at least a letter.
[[nodiscard]] std::size_t fitting(Face face, float size, std::string_view word, float width);

/// A text's width in points.
[[nodiscard]] float widthOf(Face face, float size, std::string_view text);

}  // namespace reports
