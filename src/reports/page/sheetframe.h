#pragma once

#include "reports/base/content.h"
#include "reports/page/sheetblock.h"

namespace reports {

/// What a page of a sheet says at its head and foot.
struct SheetFrame {
    Page piece;
    float top = 0;     ///< where the lines begin
    float bottom = 0;  ///< and end
    float numberBaseline = 0;
};

/// The first page has the facts; the others repeat plate, school and bus.
[[nodiscard]] SheetFrame sheetFrame(const PageSize& size, const Heading& heading,
                                    const SheetHead& head, bool isFirst);

}  // namespace reports
