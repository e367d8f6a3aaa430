#pragma once

#include <string>

namespace tools::district {

/// Whether somebody types on standard input.
[[nodiscard]] bool isTyped();

/// Asks on standard error and reads a line from the terminal without showing it. Raises Interrupted
/// on Ctrl+C and where the terminal is gone, with the terminal as it was before.
[[nodiscard]] std::string askHidden(const std::string& question);

/// Asks on standard error for a yes, and reads a line from the terminal; anything else is a no.
[[nodiscard]] bool agrees(const std::string& question);

}  // namespace tools::district
