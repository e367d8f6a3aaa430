#pragma once

#include "platform/jet/ast.h"

namespace jet {

/// Joins the terms of an OR that compare one column with literals into an IN:
/// `A='x' OR A='y' OR B=1` becomes `A IN ('x','y') OR B=1`, and
/// `A='x' AND T='S' OR A='y' AND T='S'` becomes `A IN ('x','y') AND T='S'`.
void factorOr(Expr& alternatives);

}  // namespace jet
