#pragma once

#include <string>
#include <vector>

#include "reports/base/report.h"
#include "reports/page/piece.h"

namespace reports {

/// A column of a list on its pages, in points from the left edge of the paper.
struct ColumnPlace {
    float left = 0;
    float right = 0;                   ///< without the gap to the next
    bool atEnd = false;                ///< its texts end at the right edge: numbers and times
    std::vector<std::string> caption;  ///< in lines
};

struct Table {
    std::vector<ColumnPlace> columns;
    float scale = 1;      ///< of its type: 1 is 10 points, 0.8 the least
    bool narrow = false;  ///< all of it in the condensed cut
    Style caption = LabelStyle;
};

/// Gives the columns their places between two edges. Each gets what it asks for, its caption and
/// what its kind of value needs; what is left over goes to those that grow. Where they do not fit,
/// growing and condensed ones give first, then captions go into several lines, then the type gets
/// smaller, then condensed, and at last every column narrower.
[[nodiscard]] Table tableOf(const std::vector<Column>& columns, float left, float right);

/// The room of a bar of load, before its figure.
inline constexpr float LoadBar = 26;

}  // namespace reports
