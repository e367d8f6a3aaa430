#pragma once

#include <string_view>

namespace startup {

/// Answers --help and --version, where one of them is the first word of the command line, on
/// standard output; false where neither is. No user's identifier begins with a dash.
bool isAnsweredAtOnce(int argc, const char* const* argv, std::string_view help);

}  // namespace startup
