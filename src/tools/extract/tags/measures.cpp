#include "tools/extract/tags/measures.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <span>
#include <string>

#include "platform/base/text.h"

namespace tools::extract {

namespace {

struct Unit {
    std::string_view name;
    double each = 1;
};

constexpr double MilesPerKilometre = 0.621371192;
constexpr double InchesPerMetre = 1 / 0.0254;
constexpr double TenthsPerTonne = 11.0231131;
constexpr double TenthsPerPound = 1.0 / 200;

constexpr Unit Speeds[] = {{"", MilesPerKilometre},     {"mph", 1},
                           {"km/h", MilesPerKilometre}, {"kmh", MilesPerKilometre},
                           {"kph", MilesPerKilometre},  {"kmph", MilesPerKilometre},
                           {"knots", 1.15077945}};
constexpr Unit Lengths[] = {{"", InchesPerMetre},
                            {"m", InchesPerMetre},
                            {"metres", InchesPerMetre},
                            {"meters", InchesPerMetre},
                            {"cm", InchesPerMetre / 100},
                            {"'", 12},
                            {"ft", 12},
                            {"feet", 12},
                            {"\"", 1},
                            {"in", 1},
                            {"inches", 1},
                            {"''", 1}};
constexpr Unit Weights[] = {{"", TenthsPerTonne},
                            {"t", TenthsPerTonne},
                            {"st", 10},
                            {"ton", 10},
                            {"tons", 10},
                            {"lt", 11.2},
                            {"kg", TenthsPerTonne / 1e3},
                            {"lb", TenthsPerPound},
                            {"lbs", TenthsPerPound}};

bool beginsNumber(char c) { return (c >= '0' && c <= '9') || c == '.' || c == ','; }

std::string_view taken(std::string_view& text, bool numbers) {
    const auto end = std::ranges::find_if(text, [&](char c) { return beginsNumber(c) != numbers; });
    const auto size = static_cast<std::size_t>(end - text.begin());
    const std::string_view word = text.substr(0, size);
    text.remove_prefix(size);
    return base::trim(word);
}

/// A comma is a point: "4,2".
std::optional<double> numberIn(std::string_view word) {
    std::string digits(word);
    std::ranges::replace(digits, ',', '.');
    double number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stopped, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && stopped == end ? std::optional(number) : std::nullopt;
}

std::optional<double> inUnit(double number, std::string_view name, std::span<const Unit> units) {
    for (const Unit& unit : units) {
        if (base::equalsNoCase(unit.name, name)) {
            return number * unit.each;
        }
    }
    return std::nullopt;
}

/// One value, of one part or of several: "13'6"".
std::optional<double> valueIn(std::string_view text, std::span<const Unit> units) {
    double sum = 0;
    text = base::trim(text);
    if (text.empty()) {
        return std::nullopt;
    }
    while (!text.empty()) {
        const auto number = numberIn(taken(text, true));
        const std::string_view name = taken(text, false);
        const auto value = number ? inUnit(*number, name, units) : std::nullopt;
        if (!value) {
            return std::nullopt;
        }
        sum += *value;
    }
    return sum;
}

double lowestIn(std::string_view text, std::span<const Unit> units) {
    std::optional<double> lowest;
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of(";|"), text.size());
        if (const auto value = valueIn(text.substr(0, end), units)) {
            lowest = std::min(*value, lowest.value_or(*value));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lowest.value_or(0);
}

std::uint16_t roundedDown(double value) {
    constexpr double Hair = 1e-6;
    const bool isPossible = value >= 1 && value <= std::numeric_limits<std::uint16_t>::max();
    return isPossible ? static_cast<std::uint16_t>(value + Hair) : std::uint16_t{0};
}

}  // namespace

std::uint8_t milesPerHourIn(std::string_view text) {
    constexpr double Most = 100;
    const double miles = std::round(lowestIn(text, Speeds));
    return miles >= 1 && miles <= Most ? static_cast<std::uint8_t>(miles) : std::uint8_t{0};
}

std::uint16_t inchesIn(std::string_view text) { return roundedDown(lowestIn(text, Lengths)); }

std::uint16_t shortTonTenthsIn(std::string_view text) {
    return roundedDown(lowestIn(text, Weights));
}

}  // namespace tools::extract
