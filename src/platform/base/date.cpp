#include "platform/base/date.h"

#include <charconv>
#include <chrono>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace base {

namespace {

// Days between 1899-12-30 and 1970-01-01.
constexpr std::int64_t EpochDays = 25569;

std::int64_t floorDiv(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

struct Parts {
    int year, hour, minute, second;
    unsigned month, day;
};

Parts partsOf(Date date) {
    const std::int64_t days = floorDiv(date.seconds, Date::SecondsPerDay);
    const std::int64_t rest = date.seconds - days * Date::SecondsPerDay;
    const std::chrono::year_month_day civil{
        std::chrono::sys_days{std::chrono::days{days - EpochDays}}};
    return {static_cast<int>(civil.year()),       static_cast<int>(rest / 3600),
            static_cast<int>(rest / 60 % 60),     static_cast<int>(rest % 60),
            static_cast<unsigned>(civil.month()), static_cast<unsigned>(civil.day())};
}

bool isRealDay(int year, int month, int day) {
    return std::chrono::year_month_day{std::chrono::year{year},
                                       std::chrono::month{static_cast<unsigned>(month)},
                                       std::chrono::day{static_cast<unsigned>(day)}}
        .ok();
}

/// A forward reader over the text of a date.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool atEnd() const { return rest_.empty(); }
    void blanks() { rest_ = trimLeft(rest_); }

    bool take(char c) {
        if (!rest_.starts_with(c)) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    /// A number of at most `digits` digits.
    std::optional<int> number(std::size_t digits) {
        int value = 0;
        const auto limit = std::min(digits, rest_.size());
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + limit, value);
        if (error != std::errc{} || rest_.starts_with('-')) {
            return std::nullopt;
        }
        rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
        return value;
    }

    /// "AM", "PM", "A" or "P" in any case: 'a', 'p', or 0.
    char meridiem() {
        blanks();
        for (const char which : {'a', 'p'}) {
            for (const std::string& word : {std::string{which, 'm'}, std::string{which}}) {
                if (rest_.size() >= word.size() &&
                    equalsNoCase(rest_.substr(0, word.size()), word)) {
                    rest_.remove_prefix(word.size());
                    return which;
                }
            }
        }
        return 0;
    }

    [[nodiscard]] std::string_view rest() const { return rest_; }

private:
    std::string_view rest_;
};

std::optional<Date> readDay(Reader& reader) {
    const auto first = reader.number(4);
    if (!first) {
        return std::nullopt;
    }
    const char separator = reader.take('/') ? '/' : reader.take('-') ? '-' : '\0';
    const auto second = separator != '\0' ? reader.number(2) : std::nullopt;
    if (!second || !reader.take(separator)) {
        return std::nullopt;
    }
    const auto third = reader.number(4);
    if (!third) {
        return std::nullopt;
    }
    const bool yearFirst = *first > 31;
    int year = yearFirst ? *first : *third;
    const int month = yearFirst ? *second : *first;
    const int day = yearFirst ? *third : *second;
    if (year < 100) {
        year += year < 30 ? 2000 : 1900;
    }
    if (year < 100 || year > 9999 || !isRealDay(year, month, day)) {
        return std::nullopt;
    }
    return Date::of(year, month, day);
}

std::optional<Date> readTime(Reader& reader) {
    const auto hour = reader.number(2);
    if (!hour) {
        return std::nullopt;
    }
    int minute = 0;
    int second = 0;
    const bool hasMinutes = reader.take(':');
    if (hasMinutes) {
        const auto read = reader.number(2);
        if (!read) {
            return std::nullopt;
        }
        minute = *read;
        if (reader.take(':')) {
            const auto seconds = reader.number(2);
            if (!seconds) {
                return std::nullopt;
            }
            second = *seconds;
        }
    }
    const char half = reader.meridiem();
    if ((!hasMinutes && half == 0) || *hour > 23 || minute > 59 || second > 59 ||
        (half != 0 && *hour > 12)) {
        return std::nullopt;
    }
    int h = *hour;
    if (half == 'a' && h == 12) {
        h = 0;
    } else if (half == 'p' && h < 12) {
        h += 12;
    }
    return Date::timeOfDay(h, minute, second);
}

}  // namespace

Date Date::of(int year, int month, int day, int hour, int minute, int second) {
    const std::chrono::sys_days civil{std::chrono::year_month_day{
        std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
        std::chrono::day{static_cast<unsigned>(day)}}};
    const std::int64_t days = civil.time_since_epoch().count() + EpochDays;
    return {days * SecondsPerDay + hour * 3600L + minute * 60L + second};
}

Date Date::timeOfDay(int hour, int minute, int second) {
    return {hour * 3600L + minute * 60L + second};
}

std::optional<Date> Date::parse(std::string_view text) {
    text = trim(text);
    if (text.find_first_of("/-") == std::string_view::npos) {
        Reader reader(text);
        const auto time = readTime(reader);
        return time && reader.atEnd() ? time : std::nullopt;
    }
    Reader reader(text);
    const auto day = readDay(reader);
    if (!day || reader.atEnd()) {
        return day;
    }
    if (!reader.take(' ') && !reader.take('T')) {
        return std::nullopt;
    }
    reader.blanks();
    const auto time = readTime(reader);
    if (!time || !reader.atEnd()) {
        return std::nullopt;
    }
    return day->plusSeconds(time->seconds);
}

std::optional<Date> Date::fromIso(std::string_view text) {
    constexpr std::string_view Form = "0000-00-00 00:00:00";
    if (text.size() != Form.size()) {
        return std::nullopt;
    }
    // Lists read hundreds of thousands of these, so the digits are taken as they come.
    int parts[6] = {};
    int part = 0;
    for (std::size_t i = 0; i < Form.size(); ++i) {
        if (Form[i] != '0') {
            if (text[i] != Form[i]) {
                return std::nullopt;
            }
            ++part;
        } else if (text[i] < '0' || text[i] > '9') {
            return std::nullopt;
        } else {
            parts[part] = parts[part] * 10 + (text[i] - '0');
        }
    }
    const auto [year, month, day, hour, minute, second] = parts;
    if (!isRealDay(year, month, day) || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return of(year, month, day, hour, minute, second);
}

Date Date::timeValue() const {
    return {seconds - floorDiv(seconds, SecondsPerDay) * SecondsPerDay};
}

Date Date::dateValue() const { return {floorDiv(seconds, SecondsPerDay) * SecondsPerDay}; }

std::string Date::text() const {
    const Parts p = partsOf(*this);
    std::string time = fmt::format("{}:{:02}:{:02} {}", p.hour % 12 == 0 ? 12 : p.hour % 12,
                                   p.minute, p.second, p.hour < 12 ? "AM" : "PM");
    if (dateValue().seconds == 0) {
        return time;
    }
    std::string day = fmt::format("{}/{}/{}", p.month, p.day, p.year);
    return timeValue().seconds == 0 ? day : day + " " + time;
}

std::string Date::hhmm() const {
    const Parts p = partsOf(*this);
    return fmt::format("{:02}:{:02} {}", p.hour % 12 == 0 ? 12 : p.hour % 12, p.minute,
                       p.hour < 12 ? "AM" : "PM");
}

std::string Date::iso() const {
    const Parts p = partsOf(*this);
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", p.year, p.month, p.day, p.hour,
                       p.minute, p.second);
}

}  // namespace base
