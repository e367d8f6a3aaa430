#pragma once

#include <optional>
#include <string_view>

#include "platform/base/date.h"

namespace base {

/// The day that was typed: "1/31/2026", "1/31/26", "2026-01-31". Nothing for any other text, a time
/// alone and a day with a time among them.
[[nodiscard]] std::optional<Date> typedDay(std::string_view typed);

}  // namespace base
