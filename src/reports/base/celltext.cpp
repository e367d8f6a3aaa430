#include "platform/base/numbertext.h"
#include "platform/base/timetext.h"
#include "reports/base/content.h"

namespace reports {

namespace {

std::string dayText(base::Date date) { return date.dateValue().text(); }

}  // namespace

std::string cellText(CellKind kind, const base::Value& value) {
    if (value.isNull()) {
        return {};
    }
    switch (kind) {
        case CellKind::Whole:
        case CellKind::Load:
            return base::grouped(value.asNumber(), 0);
        case CellKind::Decimal:
            return base::grouped(value.asNumber(), 1);
        case CellKind::Money:
            return base::grouped(value.asNumber(), 2);
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
