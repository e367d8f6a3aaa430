#pragma once

#include <string_view>
#include <vector>

#include "tools/script/command.h"

namespace script {

/// Reads a script: one command a line, "#" at the start of a line for a comment, empty lines
/// ignored. A text is the rest of its line; between double quotes it keeps blanks at its ends, and
/// \" \\ \t \n stand for what they usually do. Throws ScriptError at the first line that is wrong.
[[nodiscard]] std::vector<Command> parse(std::string_view script);

}  // namespace script
