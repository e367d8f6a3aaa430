#pragma once

#include "reports/base/content.h"
#include "reports/page/piece.h"

namespace reports {

/// Draws the sign of a line of directions, 12 points wide and high, from `x` on above `baseline`.
void waySign(Page& page, SheetWay::Sign sign, float x, float baseline);

}  // namespace reports
