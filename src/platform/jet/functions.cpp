#include "platform/jet/functions.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "platform/base/error.h"
#include "platform/base/fold.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/jet/format.h"
#include "platform/jet/like.h"

namespace jet {

namespace {

using base::Date;
using base::Value;
using Arguments = std::span<const Value>;

constexpr int DivisionByZero = 11;

/// A date-time as the store gives it: its ISO text, or days.
Date dateOf(const Value& value) {
    if (value.isText()) {
        if (const auto iso = Date::fromIso(value.heldText())) {
            return *iso;
        }
    }
    return value.asDate();
}

std::string isoText(Date date) { return withinCalendar(date).iso(); }

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

/// A number of characters; error 5 below `least`.
std::size_t countOf(const Value& value, std::int64_t least = 0) {
    const std::int64_t count = value.asInteger();
    if (count < least) {
        base::raise(base::errors::InvalidProcedureCall);
    }
    return static_cast<std::size_t>(count);
}

std::size_t lengthOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return !base::continuesCharacter(c); }));
}

/// What is left of a text behind so many characters.
std::string_view behind(std::string_view text, std::size_t count) {
    return text.substr(base::firstCharacters(text, count).size());
}

Value leftOf(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    return {base::firstCharacters(arguments[0].asText(), countOf(arguments[1]))};
}

Value rightOf(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const std::string text = arguments[0].asText();
    const std::size_t length = lengthOf(text);
    return {behind(text, length - std::min(length, countOf(arguments[1])))};
}

/// From a character, counted from 1, to the end or so many characters long.
Value midOf(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const std::string text = arguments[0].asText();
    const auto rest = behind(text, countOf(arguments[1], 1) - 1);
    return {arguments.size() < 3 ? rest : base::firstCharacters(rest, countOf(arguments[2]))};
}

/// Where the second text stands in the first, looked for from a character on; 0 where it does not.
Value findOf(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const std::size_t from = countOf(arguments[0], 1);
    const std::string text = base::folded(arguments[1].asText());
    if (from > lengthOf(text)) {
        return {0};
    }
    const auto start = base::firstCharacters(text, from - 1).size();
    const auto at = text.find(base::folded(arguments[2].asText()), start);
    return {at == std::string::npos
                ? std::int64_t{0}
                : static_cast<std::int64_t>(lengthOf(std::string_view(text).substr(0, at))) + 1};
}

std::string upperOf(const Value& value) { return base::upperCase(value.asText()); }
std::string lowerOf(const Value& value) { return base::lowerCase(value.asText()); }

double finite(double number) {
    if (!std::isfinite(number)) {
        base::raise(base::errors::Overflow);
    }
    return number;
}

Value divided(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const double by = arguments[1].asNumber();
    if (by == 0) {
        base::raise(DivisionByZero);
    }
    return {finite(arguments[0].asNumber() / by)};
}

/// Quotient or remainder of whole numbers.
template <bool IsQuotient>
Value dividedWhole(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const std::int64_t number = arguments[0].asInteger();
    const std::int64_t by = arguments[1].asInteger();
    if (by == 0) {
        base::raise(DivisionByZero);
    }
    if (by == -1) {  // the least number has no opposite
        return IsQuotient ? Value(-arguments[0].asNumber()) : Value(0);
    }
    return {IsQuotient ? number / by : number % by};
}

Value powerOf(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const double power = std::pow(arguments[0].asNumber(), arguments[1].asNumber());
    if (std::isnan(power)) {
        base::raise(base::errors::InvalidProcedureCall);
    }
    return {finite(power)};
}

/// The value of a SELECT in parentheses, which may give no second row.
Value onlyOf(Arguments arguments) {
    if (arguments[0].asInteger() > 1) {
        throw base::RunTimeError(
            3354, "A SELECT in parentheses gave more than one row where one value must stand.");
    }
    return arguments[1];
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
/// A blank stands where a minus would.
std::string signedText(const Value& value) {
    const std::string text = numberText(value);
    return text.starts_with('-') ? text : ' ' + text;
}
/// Blanks do not end a number.
double valOf(const Value& value) {
    std::string text = value.asText();
    std::erase_if(text, [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    return base::leadingNumber(text);
}
double numberOf(const Value& value) { return value.asNumber(); }
std::int64_t wholeOf(const Value& value) { return value.asInteger(); }
template <class Whole>
std::int64_t wholeWithin(const Value& value) {
    const std::int64_t whole = value.asInteger();
    if (whole < std::numeric_limits<Whole>::min() || whole > std::numeric_limits<Whole>::max()) {
        base::raise(base::errors::Overflow);
    }
    return whole;
}
double singleOf(const Value& value) { return base::singleOf(value.asNumber()); }
std::string isoOf(const Value& value) { return isoText(dateOf(value)); }
double daysOf(const Value& value) { return Value(dateOf(value)).asNumber(); }
double floorOf(const Value& value) { return std::floor(value.asNumber()); }
double truncated(const Value& value) { return std::trunc(value.asNumber()); }

Value nowOf(Arguments) { return {base::Now().iso()}; }

enum class Interval { Year, Quarter, Month, Week, DayOfYear, Day, Weekday, Hour, Minute, Second };

Interval intervalOf(const std::string& name) {
    static constexpr std::pair<const char*, Interval> Names[] = {
        {"yyyy", Interval::Year},   {"q", Interval::Quarter}, {"m", Interval::Month},
        {"y", Interval::DayOfYear}, {"d", Interval::Day},     {"w", Interval::Weekday},
        {"ww", Interval::Week},     {"h", Interval::Hour},    {"n", Interval::Minute},
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
        case Interval::DayOfYear:
        case Interval::Day:
        case Interval::Weekday:
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
        case Interval::Weekday:  // whole weeks, from the first date on
            return {(dateDays(to) - dateDays(from)) / 7};
        default:
            return between([&](Date date) { return floorDiv(date.seconds, secondsOf(interval)); });
    }
}

std::int64_t remainder(std::int64_t a, std::int64_t b) { return a - floorDiv(a, b) * b; }

Value datePart(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    const Date date = dateOf(arguments[1]);
    const auto day = civil(date);
    const auto year = static_cast<std::int64_t>(static_cast<int>(day.year()));
    const std::int64_t newYear = dateDays(Date::of(static_cast<int>(year), 1, 1));
    const std::int64_t weekday = remainder(dateDays(date) - 1, 7);  // Sunday is 0
    const std::int64_t second = remainder(date.seconds, Date::SecondsPerDay);
    switch (intervalOf(arguments[0].asText())) {
        case Interval::Year:
            return {year};
        case Interval::Quarter:
            return {remainder(monthsOf(date), 12) / 3 + 1};
        case Interval::Month:
            return {remainder(monthsOf(date), 12) + 1};
        case Interval::Week:  // the first one holds January 1
            return {floorDiv(dateDays(date) - 1, 7) - floorDiv(newYear - 1, 7) + 1};
        case Interval::DayOfYear:
            return {dateDays(date) - newYear + 1};
        case Interval::Day:
            return {static_cast<std::int64_t>(static_cast<unsigned>(day.day()))};
        case Interval::Weekday:
            return {weekday + 1};
        case Interval::Hour:
            return {second / 3600};
        case Interval::Minute:
            return {second / 60 % 60};
        case Interval::Second:
            return {second % 60};
    }
    return {};
}

/// A value in the form that a pattern describes.
template <auto Form, auto Read>
Value formatOf(Arguments arguments) {
    if (anyNull(arguments)) {
        return {};
    }
    return {Form(Read(arguments[0]), arguments[1].asText())};
}

std::string textOf(const Value& value) { return value.asText(); }

constexpr StoreFunction Functions[] = {
    {"jet_like", 2, true, likeOf},
    {"jet_code", 1, true, one<codeOf>},
    {"jet_left", 2, true, leftOf},
    {"jet_right", 2, true, rightOf},
    {"jet_mid", 3, true, midOf},
    {"jet_mid_to_end", 2, true, midOf},
    {"jet_instr", 3, true, findOf},
    {"jet_upper", 1, true, one<upperOf>},
    {"jet_lower", 1, true, one<lowerOf>},
    {"jet_divide", 2, true, divided},
    {"jet_quotient", 2, true, dividedWhole<true>},
    {"jet_remainder", 2, true, dividedWhole<false>},
    {"jet_power", 2, true, powerOf},
    {"jet_only", 2, true, onlyOf},
    {"jet_str", 1, true, one<signedText>},
    {"jet_long", 1, true, one<wholeWithin<std::int32_t>>},
    {"jet_short", 1, true, one<wholeWithin<std::int16_t>>},
    {"jet_datepart", 2, true, datePart},
    {"jet_format_text", 2, true, formatOf<formatText, textOf>},
    {"jet_format_number", 2, true, formatOf<formatNumber, numberOf>},
    {"jet_format_date", 2, true, formatOf<formatDate, dateOf>},
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

base::Date withinCalendar(base::Date date) {
    if (date < Date::of(100, 1, 1) || date > Date::of(9999, 12, 31, 23, 59, 59)) {
        base::raise(base::errors::Overflow);
    }
    return date;
}

}  // namespace jet
