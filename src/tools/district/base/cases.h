#pragma once

#include <string>
#include <vector>

namespace tools::district {

/// The first ten of what is told one by one, a line each, and how many more there are.
[[nodiscard]] std::string firstCases(const std::vector<std::string>& all);

}  // namespace tools::district
