#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/ado/recordset.h"
#include "platform/base/date.h"

/// A field's value as one of C++, through the null conversions.
namespace startup {

/// Null and an empty or blank text are a single blank.
[[nodiscard]] std::string textOf(const ado::Field& field);
/// Null and a text that begins with no number are 0.
[[nodiscard]] double numberOf(const ado::Field& field);
[[nodiscard]] std::int64_t wholeOf(const ado::Field& field);
/// Null and a blank text are no time.
[[nodiscard]] std::optional<base::Date> timeOf(const ado::Field& field);
/// Null is No.
[[nodiscard]] bool yesNoOf(const ado::Field& field);

}  // namespace startup
