#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tools::district {

/// What the program ends with.
enum class ExitStatus {
    Done = 0,     ///< all went well, nothing was found
    Failed = 1,   ///< findings, a statement that failed, a district that could not be made
    Misused = 2,  ///< the command line is not understood
};

/// Runs `vireo-district` with the words behind its name. Results go to `out`, complaints to
/// `complaints`; statements are read from `in` where the command line has none. Raises nothing.
ExitStatus runCommand(const std::vector<std::string>& words, std::istream& in, std::ostream& out,
                      std::ostream& complaints) noexcept;

}  // namespace tools::district
