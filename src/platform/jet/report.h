#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace jet {

/// The text around an offset (0-based), some 25 characters to either side, with "…" where it is
/// cut.
[[nodiscard]] std::string around(std::string_view sql, std::size_t offset);

/// Raises SqlError: "`what` at position 37: …WHERE RUN.RUN = 'O'Brien'…".
[[noreturn]] void fail(int number, std::string_view what, std::string_view sql, std::size_t offset);

/// The same for what is not of the dialect, with a word on apostrophes where one ended a text in
/// the middle of a word.
[[noreturn]] void failSyntax(std::string_view what, std::string_view sql, std::size_t offset);

}  // namespace jet
