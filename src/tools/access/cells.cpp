#include "tools/access/cells.h"

#include <cmath>
#include <cstddef>

#include <fmt/format.h>

#include "platform/base/date.h"
#include "platform/base/encoding.h"

namespace tools::access {

namespace {

constexpr double FirstDay = -657434;  // 0100-01-01
constexpr double LastDay = 2958466;   // one behind 9999-12-31

/// What stands in one byte a character made into two.
std::string widened(std::string_view bytes) {
    std::string wide;
    wide.reserve(2 * bytes.size());
    bool isNarrow = true;
    for (std::size_t at = 0; at < bytes.size();) {
        if (bytes[at] == '\0') {
            isNarrow = !isNarrow;
            ++at;
        } else if (isNarrow) {
            wide += bytes[at++];
            wide += '\0';
        } else if (at + 1 < bytes.size()) {
            wide += bytes.substr(at, 2);
            at += 2;
        } else {
            break;
        }
    }
    return wide;
}

}  // namespace

std::string dateText(double days) {
    if (!(days >= FirstDay && days < LastDay)) {
        return {};
    }
    const double day = std::trunc(days);
    const auto seconds = std::llround(std::abs(days - day) * base::Date::SecondsPerDay);
    const auto midnight = static_cast<std::int64_t>(day) * base::Date::SecondsPerDay;
    return base::Date{midnight + seconds}.iso();
}

std::string moneyText(std::int64_t tenThousandths) {
    constexpr std::uint64_t One = 10'000;
    const bool isNegative = tenThousandths < 0;
    const auto size = isNegative ? std::uint64_t{0} - static_cast<std::uint64_t>(tenThousandths)
                                 : static_cast<std::uint64_t>(tenThousandths);
    std::string text = fmt::format("{}{}.{:04}", isNegative ? "-" : "", size / One, size % One);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text;
}

std::string wideText(std::string_view bytes) {
    constexpr std::string_view Mark = "\xFF\xFE";
    return bytes.starts_with(Mark)
               ? base::converted(widened(bytes.substr(Mark.size())), "UTF-16LE", "UTF-8")
               : base::converted(bytes.substr(0, bytes.size() / 2 * 2), "UTF-16LE", "UTF-8");
}

std::string narrowText(std::string_view bytes, const char* codePage) {
    return base::converted(bytes, codePage, "UTF-8");
}

std::string guidText(std::string_view bytes) {
    if (bytes.size() != 16) {
        return {};
    }
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    return fmt::format(
        "{{{:02X}{:02X}{:02X}{:02X}-{:02X}{:02X}-{:02X}{:02X}-{:02X}{:02X}-"
        "{:02X}{:02X}{:02X}{:02X}{:02X}{:02X}}}",
        byte(3), byte(2), byte(1), byte(0), byte(5), byte(4), byte(7), byte(6), byte(8), byte(9),
        byte(10), byte(11), byte(12), byte(13), byte(14), byte(15));
}

}  // namespace tools::access
