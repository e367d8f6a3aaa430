#include "platform/base/timetext.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "platform/base/text.h"

namespace base {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// "705p" and "7:05 p" in the words that Date::parse reads: "7:05 pm".
std::string spelledOut(std::string_view typed) {
    std::string text = lowered(typed);
    if (text.size() > 1 && (text.back() == 'a' || text.back() == 'p')) {
        text += 'm';
    }
    const auto digits = static_cast<std::size_t>(
        std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
    if (digits == 3 || digits == 4) {
        text.insert(digits - 2, 1, ':');
    }
    const std::size_t half = text.find_first_of("ap");
    if (half != std::string::npos && half > 0 && text[half - 1] != ' ') {
        text.insert(half, 1, ' ');
    }
    return text;
}

std::optional<Date> timeOfDay(std::string_view typed) {
    std::optional<Date> date = Date::parse(typed);
    if (!date) {
        date = Date::parse(spelledOut(typed));
    }
    return date && *date == date->timeValue() ? date : std::nullopt;
}

}  // namespace

std::string tidyTime(std::string_view typed) {
    const std::string_view trimmed = trim(typed);
    if (trimmed.empty()) {
        return "";
    }
    const std::optional<Date> time = timeOfDay(trimmed);
    if (!time) {
        return std::string(typed);
    }
    const std::string shown = time->hhmm();
    const auto seconds = time->seconds % 60;
    return seconds == 0 ? shown
                        : fmt::format("{}:{:02}{}", shown.substr(0, 5), seconds, shown.substr(5));
}

std::string clockText(Date time) {
    const std::string padded = time.hhmm();
    return padded.front() == '0' ? padded.substr(1) : padded;
}

}  // namespace base
