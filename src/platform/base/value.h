#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "platform/base/date.h"

namespace base {

/// One database or control value: Null, yes/no, whole number, number, date-time or text (UTF-8).
class Value {
public:
    Value() = default;
    Value(bool value) : data_(value) {}
    Value(int value) : data_(std::int64_t{value}) {}
    Value(std::int64_t value) : data_(value) {}
    Value(double value) : data_(value) {}
    Value(Date value) : data_(value) {}
    Value(std::string value) : data_(std::move(value)) {}
    Value(std::string_view value) : data_(std::string(value)) {}
    Value(const char* value) : data_(std::string(value)) {}

    [[nodiscard]] bool isNull() const { return data_.index() == 0; }
    [[nodiscard]] bool isYesNo() const { return std::holds_alternative<bool>(data_); }
    [[nodiscard]] bool isInteger() const { return std::holds_alternative<std::int64_t>(data_); }
    [[nodiscard]] bool isDouble() const { return std::holds_alternative<double>(data_); }
    [[nodiscard]] bool isDate() const { return std::holds_alternative<Date>(data_); }
    [[nodiscard]] bool isText() const { return std::holds_alternative<std::string>(data_); }

    /// The text as it is held; only where isText().
    [[nodiscard]] const std::string& heldText() const { return std::get<std::string>(data_); }

    // Conversions. Null raises "Invalid use of Null" (94), what cannot be read as the asked kind
    // raises "Type mismatch" (13), what does not fit raises "Overflow" (6).

    /// The default text: "True"/"False", digits without padding or trailing zeros, Date::text().
    [[nodiscard]] std::string asText() const;
    /// Yes is -1; a date-time is its days; text must be a number as a whole.
    [[nodiscard]] double asNumber() const;
    /// asNumber() rounded to a whole number, halves to even.
    [[nodiscard]] std::int64_t asInteger() const;
    /// Non-zero is true; the texts "True" and "False" in any case, or a number.
    [[nodiscard]] bool asBoolean() const;
    /// Text is read by Date::parse; a number counts days.
    [[nodiscard]] Date asDate() const;

    /// Same kind and same content (a whole number and a number of equal size are the same).
    friend bool operator==(const Value& a, const Value& b);

private:
    std::variant<std::monostate, bool, std::int64_t, double, Date, std::string> data_;
};

/// A number as text without padding and trailing zeros: "61.5", "60", "-0.25"; 15 digits at most.
[[nodiscard]] std::string numberText(double number);

/// Rounded to single precision, given as the number with the fewest digits that is that single: 0.1
/// stays 0.1, and a cast to float loses nothing.
[[nodiscard]] double singleOf(double number);

/// Rounded to a whole number, halves to even; raises "Overflow" (6) beyond 64 bits.
[[nodiscard]] std::int64_t roundHalfEven(double number);

}  // namespace base
