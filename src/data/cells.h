#pragma once

#include "platform/base/value.h"
#include "platform/controls/texttable.h"

namespace data {

/// A field's value as a list's cell of that kind holds it: a Null or blank text is one blank, a
/// number that is Null, zero or no number is 0, a time stays as it is.
[[nodiscard]] base::Value cellValue(controls::CellKind kind, base::Value value);

}  // namespace data
