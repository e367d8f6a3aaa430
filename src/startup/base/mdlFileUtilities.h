#pragma once

#include <string>

/// Files that the program shares with the map program and the clean-up program.
namespace startup {

/// Adds one line to "log.txt" in the program folder. Raises nothing: where it cannot be written the
/// line is lost, because a trace must not stop the work that it tells about.
void logLine(const std::string& text);

}  // namespace startup
