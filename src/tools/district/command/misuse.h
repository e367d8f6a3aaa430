#pragma once

#include <string>

namespace tools::district {

/// Thrown for a command line that is not understood.
struct Misuse {
    std::string what;
};

}  // namespace tools::district
