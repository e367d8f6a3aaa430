#pragma once

#include <string>
#include <string_view>

namespace base {

/// A text of one encoding in another, both by the system's names for them; "?" for each character
/// that is not of the one or not in the other.
[[nodiscard]] std::string converted(std::string_view text, const char* from, const char* to);

}  // namespace base
