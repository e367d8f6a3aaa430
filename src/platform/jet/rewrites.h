#pragma once

#include "platform/jet/ast.h"

namespace jet {

/// Brings a bound statement into the form that the store searches fastest, without changing its
/// result: HAVING on group columns becomes WHERE, a grouping whose rows are only looked for is left
/// out, comparisons of one column joined by OR become IN (also where they share further
/// conditions), a comparison of a date column's day becomes one of the column.
void rewrite(Statement& statement);

}  // namespace jet
