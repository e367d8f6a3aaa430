#include "tools/district/base/cases.h"

#include <algorithm>

#include <fmt/format.h>

namespace tools::district {

std::string firstCases(const std::vector<std::string>& all) {
    constexpr std::size_t Most = 10;
    std::string text;
    for (std::size_t i = 0; i < std::min(all.size(), Most); ++i) {
        text += fmt::format("  {}\n", all[i]);
    }
    return all.size() <= Most ? text : text + fmt::format("  and {} more\n", all.size() - Most);
}

}  // namespace tools::district
