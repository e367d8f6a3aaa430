#pragma once

#include <string>

/// Files that the program shares with the map program and the clean-up program.
namespace startup {

/// Who works here: the program's user, or the desktop's account where none was given, and the
/// computer's name: "PLANNER on desk7".
[[nodiscard]] std::string userAndComputer();

/// Adds one line to "log.txt" in the program folder: the text, the time, the user and the computer,
/// apart by tabs. From a megabyte on the file becomes "logOld.txt" and a new one begins. Raises
/// nothing: where it cannot be written the line is lost, because a trace must not stop the work
/// that it tells about.
void logLine(const std::string& text);

}  // namespace startup
