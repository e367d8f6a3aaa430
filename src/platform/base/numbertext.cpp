#include "platform/base/numbertext.h"

#include <fmt/format.h>

namespace base {

std::string grouped(double number, int decimals) {
    std::string digits = fmt::format("{:.{}f}", number, decimals);
    const auto point = digits.find('.');
    const auto first = static_cast<std::size_t>(digits.front() == '-');
    for (std::size_t at = point == std::string::npos ? digits.size() : point; at > first + 3;) {
        at -= 3;
        digits.insert(at, 1, ',');
    }
    return digits;
}

}  // namespace base
