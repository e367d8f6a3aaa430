#include "tools/district/travel/travel.h"

#include <cmath>

#include <fmt/format.h>

#include "platform/base/value.h"

namespace tools::district {

namespace {

constexpr double FeetPerMinute = 20 * FeetPerMile / 60;
constexpr double BlockFeet = FeetPerMile / 4;

int blockOf(double feet) { return static_cast<int>(std::floor(feet / BlockFeet)) + 1; }

std::string ordinal(int number) {
    const int tens = std::abs(number) % 100;
    const int ones = tens % 10;
    const bool teen = tens >= 11 && tens <= 13;
    const char* ending = teen        ? "th"
                         : ones == 1 ? "st"
                         : ones == 2 ? "nd"
                         : ones == 3 ? "rd"
                                     : "th";
    return fmt::format("{}{}", number, ending);
}

}  // namespace

double feetBetween(Point a, Point b) { return std::abs(a.x - b.x) + std::abs(a.y - b.y); }

double driveMinutes(Point a, Point b) { return feetBetween(a, b) / FeetPerMinute; }

double driveMinutesAtSeconds(Point a, Point b) { return std::round(driveMinutes(a, b) * 60) / 60; }

double milesBetween(Point a, Point b) {
    return std::round(feetBetween(a, b) / FeetPerMile * 100) / 100;
}

double boardingMinutes(int students) { return base::singleOf((19 + 2.6 * students) / 60); }

double schoolMinutes(int seats) { return base::singleOf((29 + 1.9 * seats) / 60); }

std::int64_t gapSeconds(double loadMinutes, double driveMinutesToNext) {
    const float minutes = static_cast<float>(driveMinutesToNext) + static_cast<float>(loadMinutes);
    return base::roundHalfEven(static_cast<double>(minutes * 60));
}

std::string streetName(double y) { return ordinal(blockOf(y)) + " Street"; }

std::string avenueName(double x) { return ordinal(blockOf(x)) + " Avenue"; }

std::string addressAt(Point at) {
    const int inBlock = static_cast<int>(std::fmod(std::abs(at.x), BlockFeet) / BlockFeet * 100);
    return fmt::format("{} {}", blockOf(at.x) * 100 + inBlock, streetName(at.y));
}

std::string cornerAt(Point at) { return streetName(at.y) + " at " + avenueName(at.x); }

}  // namespace tools::district
