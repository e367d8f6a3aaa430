#include <fmt/format.h>

#include "platform/base/timetext.h"
#include "reports/base/content.h"

namespace reports {

namespace {

/// "3,409.5": digits of a number with thousands apart.
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

std::string dayText(base::Date date) { return date.dateValue().text(); }

}  // namespace

std::string cellText(CellKind kind, const base::Value& value) {
    if (value.isNull()) {
        return {};
    }
    switch (kind) {
        case CellKind::Whole:
        case CellKind::Load:
            return grouped(value.asNumber(), 0);
        case CellKind::Decimal:
            return grouped(value.asNumber(), 1);
        case CellKind::Money:
            return grouped(value.asNumber(), 2);
        case CellKind::Time:
            return base::clockText(value.asDate());
        case CellKind::Date:
            return dayText(value.asDate());
        case CellKind::DateTime:
            return dayText(value.asDate()) + ' ' + base::clockText(value.asDate());
        case CellKind::Text:
        case CellKind::Days:
            break;
    }
    return value.asText();
}

}  // namespace reports
