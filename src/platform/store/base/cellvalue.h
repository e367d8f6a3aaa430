#pragma once

#include "platform/base/value.h"
#include "platform/store/base/database.h"

namespace store {

/// A cell as a value of its own: Null, whole number, number or text.
[[nodiscard]] base::Value storedValue(const Cell& cell);

}  // namespace store
