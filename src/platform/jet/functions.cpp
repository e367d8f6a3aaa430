#include "platform/jet/functions.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <utility>

#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/jet/like.h"

namespace jet {

namespace {

using base::Date;
using base::Value;
using Arguments = std::span<const Value>;

/// A date-time as the store gives it: its ISO text, or days.
Date dateOf(const Value& value) {
    if (value.isText()) {
        if (const auto iso = Date::fromIso(value.heldText())) {
            return *iso;
        }
    }
    return value.asDate();
}

/// The store's form of a date; its calendar ends with the year 9999.
std::string isoText(Date date) {
    if (date < Date::of(100, 1, 1) || date > Date::of(9999, 12, 31, 23, 59, 59)) {
        base::raise(base::errors::Overflow);
    }
    return date.iso();
}

/// Functions of one argument give Null for Null.
template <auto Function>
Value one(Arguments arguments) {
    return arguments[0].isNull() ? Value() : Value(Function(arguments[0]));
}

bool anyNull(Arguments arguments) {
    for (const Value& value : arguments) {
        if (value.isNull()) {
            return true;
        }
    }
    return false;
}

Value likeOf(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    return {like(arguments[0].asText(), arguments[1].asText())};
}

std::string codeOf(const Value& value) { return std::string(base::codeOf(value.asText())); }

Value rightOf(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const std::string text = arguments[0].asText();
    auto at = text.size();
    for (auto count = arguments[1].asInteger(); count > 0 && at > 0; --count) {
        at = base::characterStart(text, at - 1);
    }
    return {text.substr(at)};
}

double roundedTo(double number, std::int64_t digits) {
    const double scale = std::pow(10.0, static_cast<double>(digits));
    return std::nearbyint(number * scale) / scale;
}

Value roundOf(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    return {roundedTo(arguments[0].asNumber(), arguments[1].asInteger())};
}

std::string numberText(const Value& value) { return base::numberText(value.asNumber()); }
std::string dateText(const Value& value) { return dateOf(value).text(); }
std::string yesNoText(const Value& value) { return Value(value.asNumber() != 0).asText(); }
double valOf(const Value& value) { return base::leadingNumber(value.asText()); }
double numberOf(const Value& value) { return value.asNumber(); }
std::int64_t wholeOf(const Value& value) { return value.asInteger(); }
double singleOf(const Value& value) { return base::singleOf(value.asNumber()); }
std::string isoOf(const Value& value) { return isoText(dateOf(value)); }
double daysOf(const Value& value) { return Value(dateOf(value)).asNumber(); }
double floorOf(const Value& value) { return std::floor(value.asNumber()); }
double truncated(const Value& value) { return std::trunc(value.asNumber()); }

Value nowOf(Arguments) { return {base::Now().iso()}; }

enum class Interval { Year, Quarter, Month, Week, Day, Hour, Minute, Second };

Interval intervalOf(const std::string& name) {
    static constexpr std::pair<const char*, Interval> Names[] = {
        {"yyyy", Interval::Year}, {"q", Interval::Quarter}, {"m", Interval::Month},
        {"y", Interval::Day},     {"d", Interval::Day},     {"w", Interval::Day},
        {"ww", Interval::Week},   {"h", Interval::Hour},    {"n", Interval::Minute},
        {"s", Interval::Second}};
    for (const auto& [text, interval] : Names) {
        if (base::equalsNoCase(name, text)) {
            return interval;
        }
    }
    throw base::RunTimeError(5, "\"" + name + "\" is not an interval of time");
}

/// Seconds of an interval of fixed length.
std::int64_t secondsOf(Interval interval) {
    switch (interval) {
        case Interval::Week:
            return 7 * Date::SecondsPerDay;
        case Interval::Day:
            return Date::SecondsPerDay;
        case Interval::Hour:
            return 3600;
        case Interval::Minute:
            return 60;
        case Interval::Second:
            return 1;
        default:
            base::raise(base::errors::InvalidProcedureCall);
    }
}

constexpr std::int64_t EpochDays = 25569;  // 1899-12-30 to 1970-01-01

std::int64_t floorDiv(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

std::int64_t dateDays(Date date) { return floorDiv(date.seconds, Date::SecondsPerDay); }

std::chrono::year_month_day civil(Date date) {
    return std::chrono::year_month_day{
        std::chrono::sys_days{std::chrono::days{dateDays(date) - EpochDays}}};
}

/// The same day of another month, or that month's last.
Date plusMonths(Date date, std::int64_t months) {
    using std::chrono::last;
    constexpr std::int64_t Most = 12 * 10'000LL;
    if (months > Most || months < -Most) {
        base::raise(base::errors::Overflow);
    }
    const auto from = civil(date);
    const auto month = std::chrono::year_month{from.year(), from.month()} +
                       std::chrono::months{static_cast<int>(months)};
    const auto day = std::min(from.day(), (month / last).day());
    const Date midnight = Date::of(static_cast<int>(month.year()),
                                   static_cast<int>(static_cast<unsigned>(month.month())),
                                   static_cast<int>(static_cast<unsigned>(day)));
    return midnight.plusSeconds(date.seconds - date.dateValue().seconds);
}

std::int64_t monthsOf(Date date) {
    const auto day = civil(date);
    return static_cast<int>(day.year()) * std::int64_t{12} + static_cast<unsigned>(day.month()) - 1;
}

Value dateAdd(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const Interval interval = intervalOf(arguments[0].asText());
    const std::int64_t count = arguments[1].asInteger();
    const Date date = dateOf(arguments[2]);
    constexpr std::int64_t Most = 400'000'000'000;  // more seconds than the calendar holds
    if (count > Most || count < -Most) {
        base::raise(base::errors::Overflow);
    }
    switch (interval) {
        case Interval::Year:
            return {isoText(plusMonths(date, count * 12))};
        case Interval::Quarter:
            return {isoText(plusMonths(date, count * 3))};
        case Interval::Month:
            return {isoText(plusMonths(date, count))};
        default:
            return {isoText(date.plusSeconds(count * secondsOf(interval)))};
    }
}

/// How many borders of the interval lie between two dates.
Value dateDiff(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const Interval interval = intervalOf(arguments[0].asText());
    const Date from = dateOf(arguments[1]);
    const Date to = dateOf(arguments[2]);
    const auto between = [&](auto&& count) { return Value(count(to) - count(from)); };
    switch (interval) {
        case Interval::Year:
            return between([](Date date) { return floorDiv(monthsOf(date), 12); });
        case Interval::Quarter:
            return between([](Date date) { return floorDiv(monthsOf(date), 3); });
        case Interval::Month:
            return between(monthsOf);
        case Interval::Week:
            // 1899-12-31 was a Sunday, with which a week begins.
            return between([](Date date) { return floorDiv(dateDays(date) - 1, 7); });
        default:
            return between([&](Date date) { return floorDiv(date.seconds, secondsOf(interval)); });
    }
}

constexpr StoreFunction Functions[] = {
    {"jet_like", 2, true, likeOf},
    {"jet_code", 1, true, one<codeOf>},
    {"jet_right", 2, true, rightOf},
    {"jet_number_text", 1, true, one<numberText>},
    {"jet_date_text", 1, true, one<dateText>},
    {"jet_yesno_text", 1, true, one<yesNoText>},
    {"jet_val", 1, true, one<valOf>},
    {"jet_number", 1, true, one<numberOf>},
    {"jet_whole", 1, true, one<wholeOf>},
    {"jet_single", 1, true, one<singleOf>},
    {"jet_date", 1, true, one<isoOf>},
    {"jet_days", 1, true, one<daysOf>},
    {"jet_int", 1, true, one<floorOf>},
    {"jet_fix", 1, true, one<truncated>},
    {"jet_round", 2, true, roundOf},
    {"jet_now", 0, false, nowOf},
    {"jet_dateadd", 3, true, dateAdd},
    {"jet_datediff", 3, true, dateDiff},
};

}  // namespace

std::span<const StoreFunction> storeFunctions() { return Functions; }

}  // namespace jet
