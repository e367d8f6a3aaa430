#pragma once

#include <string>

namespace base {

/// "3,409.5": a number with so many decimals, thousands apart.
[[nodiscard]] std::string grouped(double number, int decimals);

}  // namespace base
