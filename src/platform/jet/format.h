#pragma once

#include <string>
#include <string_view>

#include "platform/base/date.h"

/// Values in the form that a pattern of Format describes: a name ("Short Date", "Fixed"), or signs.
/// Raise error 5 for what is none.
namespace jet {

/// `d m y h n s` once to four times, AM/PM; "m" behind an hour is minutes.
[[nodiscard]] std::string formatDate(base::Date date, std::string_view pattern);

/// `0 # . , %`, up to three parts with `;` between them: for numbers above, below and of 0.
[[nodiscard]] std::string formatNumber(double number, std::string_view pattern);

/// `<` and `>` for small and capital letters, `@` and `&` for a character.
[[nodiscard]] std::string formatText(const std::string& text, std::string_view pattern);

}  // namespace jet
