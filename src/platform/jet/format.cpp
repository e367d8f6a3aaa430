#include "platform/jet/format.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/fold.h"
#include "platform/base/text.h"
#include "platform/base/value.h"

namespace jet {

namespace {

using Named = std::pair<std::string_view, std::string_view>;

/// The pattern that a name stands for, otherwise the text itself.
template <std::size_t Count>
std::string_view patternOf(const Named (&names)[Count], std::string_view text) {
    for (const auto& [name, pattern] : names) {
        if (base::equalsNoCase(name, text)) {
            return pattern;
        }
    }
    return text;
}

constexpr Named DateNames[] = {{"Long Date", "dddd, mmmm d, yyyy"}, {"Medium Date", "dd-mmm-yy"},
                               {"Short Date", "m/d/yyyy"},          {"Long Time", "h:nn:ss AM/PM"},
                               {"Medium Time", "hh:nn AM/PM"},      {"Short Time", "hh:nn"}};
constexpr Named NumberNames[] = {{"Fixed", "0.00"},
                                 {"Standard", "#,##0.00"},
                                 {"Percent", "0.00%"},
                                 {"Currency", "$#,##0.00;($#,##0.00)"},
                                 {"Yes/No", "\\Y\\e\\s;\\Y\\e\\s;\\N\\o"},
                                 {"True/False", "\\T\\r\\u\\e;\\T\\r\\u\\e;\\F\\a\\l\\s\\e"},
                                 {"On/Off", "\\O\\n;\\O\\n;\\O\\f\\f"}};

constexpr std::string_view Months[] = {"January",   "February", "March",    "April",
                                       "May",       "June",     "July",     "August",
                                       "September", "October",  "November", "December"};
constexpr std::string_view Weekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                         "Thursday", "Friday", "Saturday"};

/// The text at the beginning of a pattern that stands for itself, in quotes or behind a backslash;
/// takes it off. Nothing where the pattern does not begin so.
bool takeQuoted(std::string_view& pattern, std::string& into) {
    if (pattern.front() == '\\' && pattern.size() > 1) {
        const auto size = base::characterSize(pattern.substr(1));
        into += pattern.substr(1, size);
        pattern.remove_prefix(1 + size);
        return true;
    }
    const auto close = pattern.front() == '"' ? pattern.find('"', 1) : std::string_view::npos;
    if (close == std::string_view::npos) {
        return false;
    }
    into += pattern.substr(1, close - 1);
    pattern.remove_prefix(close + 1);
    return true;
}

/// A date-time in its parts, as ISO text has them.
struct DateParts {
    explicit DateParts(base::Date date) : iso(date.iso()), weekday(weekdayOf(date)) {}
    [[nodiscard]] int number(std::size_t from, std::size_t length) const {
        return std::stoi(iso.substr(from, length));
    }
    static std::size_t weekdayOf(base::Date date) {
        constexpr std::int64_t Weeks = std::int64_t{7} * 200'000;  // 1899-12-30 was a Saturday
        const auto days = date.dateValue().seconds / base::Date::SecondsPerDay;
        return static_cast<std::size_t>((days + Weeks + 6) % 7);
    }

    std::string iso;  ///< 2026-01-31 07:05:09
    std::size_t weekday;
};

std::string padded(int number, std::size_t width) {
    return fmt::format("{:0{}}", number, std::min<std::size_t>(width, 2));
}

/// Text of one sign, repeated `count` times.
std::string datePiece(const DateParts& parts, char sign, std::size_t count, bool halfDays) {
    const int hour = parts.number(11, 2);
    switch (sign) {
        case 'd':
            return count < 3 ? padded(parts.number(8, 2), count)
                             : std::string(Weekdays[parts.weekday].substr(0, count == 3 ? 3 : 9));
        case 'm': {
            const int month = parts.number(5, 2);
            return count < 3 ? padded(month, count)
                             : std::string(Months[month - 1].substr(0, count == 3 ? 3 : 9));
        }
        case 'y':
            return count > 2 ? parts.iso.substr(0, 4) : parts.iso.substr(2, 2);
        case 'h':
            return padded(halfDays ? (hour + 11) % 12 + 1 : hour, count);
        case 'n':
            return padded(parts.number(14, 2), count);
        default:
            return padded(parts.number(17, 2), count);
    }
}

/// "AM/PM" or "am/pm" at the beginning of a pattern, in its own letters; empty where it is not.
std::string_view halfDaySign(std::string_view pattern) {
    const auto sign = pattern.substr(0, 5);
    return base::equalsNoCase(sign, "AM/PM") ? sign : std::string_view();
}

bool hasHalfDays(std::string_view pattern) {
    return base::lowered(pattern).find("am/pm") != std::string::npos;
}

/// One part of a number's pattern, taken to pieces.
struct NumberPattern {
    std::string before;  ///< literal text
    std::string behind;
    std::size_t whole = 0;  ///< digits that are always there
    std::size_t fixed = 0;  ///< digits behind the point, always there
    std::size_t most = 0;   ///< and at most
    bool hasDigits = false;
    bool hasPoint = false;
    bool grouped = false;
    int percent = 0;
};

void addDigit(NumberPattern& parts, char sign) {
    parts.hasDigits = true;
    if (parts.hasPoint) {
        ++parts.most;
        parts.fixed = sign == '0' ? parts.most : parts.fixed;
    } else {
        parts.whole += sign == '0' ? 1 : 0;
    }
}

NumberPattern taken(std::string_view pattern) {
    NumberPattern parts;
    while (!pattern.empty()) {
        std::string& literal = parts.hasDigits ? parts.behind : parts.before;
        const char sign = pattern.front();
        if (takeQuoted(pattern, literal)) {
            continue;
        }
        if (sign == '0' || sign == '#') {
            addDigit(parts, sign);
        } else if (sign == '.' && !parts.hasPoint) {
            parts.hasPoint = true;
            parts.hasDigits = true;
        } else if (sign == ',' && parts.hasDigits) {
            parts.grouped = true;
        } else {
            parts.percent += sign == '%' ? 1 : 0;
            literal += sign;
        }
        pattern.remove_prefix(1);
    }
    return parts;
}

std::string grouped(const std::string& digits) {
    std::string result;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        result += i > 0 && (digits.size() - i) % 3 == 0 ? "," : "";
        result += digits[i];
    }
    return result;
}

std::string digitsOf(double number, const NumberPattern& parts) {
    constexpr std::size_t MostDecimals = 15;
    auto text = fmt::format("{:.{}f}", number, std::min(parts.most, MostDecimals));
    const auto point = std::min(text.find('.'), text.size());
    std::string whole = text.substr(0, point);
    std::string decimals = point < text.size() ? text.substr(point + 1) : "";
    while (decimals.size() > parts.fixed && decimals.ends_with('0')) {
        decimals.pop_back();
    }
    whole = whole == "0" && parts.whole == 0 ? "" : whole;
    whole.insert(0, parts.whole > whole.size() ? parts.whole - whole.size() : 0, '0');
    return (parts.grouped ? grouped(whole) : whole) + (parts.hasPoint ? "." : "") + decimals;
}

/// The parts of a pattern between semicolons that no quotes hold.
std::vector<std::string_view> sections(std::string_view pattern) {
    std::vector<std::string_view> result;
    std::string_view rest = pattern;
    std::string ignored;
    while (!rest.empty()) {
        if (takeQuoted(rest, ignored)) {
            continue;
        }
        if (rest.front() == ';') {
            result.push_back(pattern.substr(0, pattern.size() - rest.size()));
            pattern = rest.substr(1);
        }
        rest.remove_prefix(1);
    }
    result.push_back(pattern);
    return result;
}

}  // namespace

std::string formatDate(base::Date date, std::string_view text) {
    constexpr std::string_view Signs = "dmyhns";
    if (text.empty() || base::equalsNoCase(text, "General Date")) {
        return date.text();
    }
    std::string_view pattern = patternOf(DateNames, text);
    const DateParts parts(date);
    const bool halfDays = hasHalfDays(pattern);
    std::string result;
    char before = 0;
    while (!pattern.empty()) {
        if (takeQuoted(pattern, result)) {
            continue;
        }
        if (const auto sign = halfDaySign(pattern); !sign.empty()) {
            result += parts.number(11, 2) < 12 ? sign.substr(0, 2) : sign.substr(3);
            pattern.remove_prefix(sign.size());
            continue;
        }
        const char sign = base::lowered(pattern.front());
        const auto end = pattern.find_first_not_of(pattern.substr(0, 1));
        const auto count =
            Signs.find(sign) == std::string_view::npos
                ? 1
                : std::min(end == std::string_view::npos ? pattern.size() : end, std::size_t{4});
        if (Signs.find(sign) == std::string_view::npos) {
            result += pattern.front();
        } else {
            result += datePiece(parts, sign == 'm' && before == 'h' && count < 3 ? 'n' : sign,
                                count, halfDays);
            before = sign;
        }
        pattern.remove_prefix(count);
    }
    return result;
}

std::string formatNumber(double number, std::string_view text) {
    if (text.empty() || base::equalsNoCase(text, "General Number")) {
        return base::numberText(number);
    }
    const auto parts = sections(patternOf(NumberNames, text));
    if (parts.size() > 3) {
        base::raise(base::errors::InvalidProcedureCall);
    }
    const bool hasOwnMinus = number < 0 && parts.size() > 1;
    const std::size_t section = number < 0 && parts.size() > 1    ? 1
                                : number == 0 && parts.size() > 2 ? 2
                                                                  : 0;
    const NumberPattern pattern = taken(parts[section]);
    if (!pattern.hasDigits) {
        return pattern.before;
    }
    const double size = std::abs(number) * std::pow(100, pattern.percent);
    const std::string digits = digitsOf(size, pattern);
    const bool isNegative =
        number < 0 && !hasOwnMinus && digits.find_first_of("123456789") != std::string::npos;
    return (isNegative ? "-" : "") + pattern.before + digits + pattern.behind;
}

std::string formatText(const std::string& text, std::string_view pattern) {
    if (pattern == ">" || pattern == "<") {
        return pattern == ">" ? base::upperCase(text) : base::lowerCase(text);
    }
    if (pattern.find_first_not_of("@&") == std::string_view::npos) {
        return text;
    }
    base::raise(base::errors::InvalidProcedureCall);
}

}  // namespace jet
