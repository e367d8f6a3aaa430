#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace base {

/// A date-time as whole seconds since 1899-12-30 00:00:00. A time of day is a Date on that day.
struct Date {
    std::int64_t seconds = 0;

    static constexpr std::int64_t SecondsPerDay = 86400;

    /// From calendar parts (month and day 1-based). The parts are taken as they are, not checked.
    [[nodiscard]] static Date of(int year, int month, int day, int hour = 0, int minute = 0,
                                 int second = 0);
    [[nodiscard]] static Date timeOfDay(int hour, int minute, int second = 0);

    /// Reads what a user types or the default text says: "7:5 am", "07:05 AM", "19:05", "7 pm",
    /// "1/31/2026", "1/31/2026 7:05:09 PM", "2026-01-31 19:05:09". Nothing for any other text.
    [[nodiscard]] static std::optional<Date> parse(std::string_view text);

    /// Reads the store's form "1899-12-30 08:00:00"; nothing for any other text.
    [[nodiscard]] static std::optional<Date> fromIso(std::string_view text);

    /// The time of day alone, on 1899-12-30.
    [[nodiscard]] Date timeValue() const;
    /// The day alone, at midnight.
    [[nodiscard]] Date dateValue() const;
    [[nodiscard]] Date plusSeconds(std::int64_t count) const { return {seconds + count}; }

    /// The default text: "8:05:00 AM" on 1899-12-30, "1/31/2026" at midnight of another day,
    /// otherwise "1/31/2026 8:05:00 AM".
    [[nodiscard]] std::string text() const;
    /// What lists show: "08:05 AM".
    [[nodiscard]] std::string hhmm() const;
    /// The store's form "1899-12-30 08:00:00".
    [[nodiscard]] std::string iso() const;

    friend auto operator<=>(const Date&, const Date&) = default;
};

}  // namespace base
