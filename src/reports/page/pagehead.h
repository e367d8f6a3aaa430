#pragma once

#include "reports/page/columns.h"

namespace reports {

/// What every page of a list says, made once.
struct PageFrame {
    Page piece;        ///< head, captions and foot
    float left = 0;    ///< where texts begin
    float right = 0;   ///< where they end; bands and rules go further by `Hang`
    float top = 0;     ///< where the rows begin
    float bottom = 0;  ///< and end
    float numberBaseline = 0;
};

/// How far bands and rules go beyond the texts, in points.
inline constexpr float Hang = 4;
/// From the edge of the paper to the texts of a list.
inline constexpr float ListMargin = 36;

[[nodiscard]] PageFrame frameOf(const PageSize& size, const Heading& heading,
                                const std::vector<Column>& columns, const Table& table);

/// "Printed Nov 21, 2026 9:41 AM by PLANNER"
[[nodiscard]] std::string printedBy(const Heading& heading);

}  // namespace reports
