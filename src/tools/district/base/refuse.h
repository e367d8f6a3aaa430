#pragma once

#include <string>

namespace tools::district {

/// Raises base::RunTimeError "Path/File access error" (75) with a sentence that says why.
[[noreturn]] void refuse(const std::string& why);

}  // namespace tools::district
