#include "platform/base/value.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"

namespace base {

namespace {

template <class... Ts>
struct Overloaded : Ts... {
    using Ts::operator()...;
};
template <class... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

std::optional<double> wholeNumber(std::string_view text) {
    text = trim(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    double number = 0;
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    if (error != std::errc{} || end != last || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

}  // namespace

namespace {

/// The fewest digits that name the number, which are those of its 15-digit form where there are no
/// more; nothing for other numbers and for those that are written with an exponent.
std::optional<std::string> shortText(double number) {
    const double size = std::abs(number);
    if (!(size >= 1e-4 && size < 1e15)) {
        return std::nullopt;
    }
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                       std::chars_format::fixed);
    const std::string_view text(digits.data(), written.ptr - digits.data());
    const auto first = text.find_first_not_of("-0.");
    if (written.ec != std::errc{} || text.size() - first > 15) {
        return std::nullopt;
    }
    return std::string(text);
}

}  // namespace

std::string numberText(double number) {
    if (number == 0) {
        return "0";
    }
    if (auto text = shortText(number)) {
        return *std::move(text);
    }
    return fmt::format("{:.15g}", number);
}

double singleOf(double number) {
    const auto single = static_cast<float>(number);
    if (!std::isfinite(single)) {
        return single;
    }
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), single);
    double shortest = 0;
    std::from_chars(digits.data(), written.ptr, shortest);
    return shortest;
}

std::int64_t roundHalfEven(double number) {
    const double rounded = std::nearbyint(number);
    if (!(std::abs(rounded) < 9.2e18)) {
        raise(errors::Overflow);
    }
    return static_cast<std::int64_t>(rounded);
}

std::string Value::asText() const {
    return std::visit(
        Overloaded{[](std::monostate) -> std::string { raise(errors::InvalidUseOfNull); },
                   [](bool value) -> std::string { return value ? "True" : "False"; },
                   [](std::int64_t value) { return std::to_string(value); },
                   [](double value) { return numberText(value); },
                   [](Date value) { return value.text(); },
                   [](const std::string& value) { return value; }},
        data_);
}

double Value::asNumber() const {
    return std::visit(Overloaded{[](std::monostate) -> double { raise(errors::InvalidUseOfNull); },
                                 [](bool value) { return value ? -1.0 : 0.0; },
                                 [](std::int64_t value) { return static_cast<double>(value); },
                                 [](double value) { return value; },
                                 [](Date value) {
                                     return static_cast<double>(value.seconds) /
                                            static_cast<double>(Date::SecondsPerDay);
                                 },
                                 [](const std::string& value) {
                                     const auto number = wholeNumber(value);
                                     if (!number) {
                                         raise(errors::TypeMismatch);
                                     }
                                     return *number;
                                 }},
                      data_);
}

std::int64_t Value::asInteger() const {
    if (isInteger()) {
        return std::get<std::int64_t>(data_);
    }
    return roundHalfEven(asNumber());
}

bool Value::asBoolean() const {
    if (isText()) {
        if (equalsNoCase(trim(heldText()), "True")) {
            return true;
        }
        if (equalsNoCase(trim(heldText()), "False")) {
            return false;
        }
    }
    return asNumber() != 0;
}

Date Value::asDate() const {
    if (isDate()) {
        return std::get<Date>(data_);
    }
    if (isText()) {
        if (const auto date = Date::parse(heldText())) {
            return *date;
        }
    }
    return {roundHalfEven(asNumber() * static_cast<double>(Date::SecondsPerDay))};
}

bool operator==(const Value& a, const Value& b) {
    const auto isNumber = [](const Value& v) { return v.isInteger() || v.isDouble(); };
    if (a.data_.index() != b.data_.index() && isNumber(a) && isNumber(b)) {
        return a.asNumber() == b.asNumber();
    }
    return a.data_ == b.data_;
}

}  // namespace base
