#include "tools/district/travel/travel.h"

#include <cmath>

#include <fmt/format.h>

#include "platform/base/value.h"
#include "streets/network/gridnetwork.h"

namespace tools::district {

constexpr double FeetPerMinute = 20 * FeetPerMile / 60;
constexpr double BlockFeet = FeetPerMile / 4;

double feetBetween(Point a, Point b) { return std::abs(a.x - b.x) + std::abs(a.y - b.y); }

double driveMinutes(Point a, Point b) { return feetBetween(a, b) / FeetPerMinute; }

double driveMinutesAtSeconds(Point a, Point b) { return std::round(driveMinutes(a, b) * 60) / 60; }

double milesBetween(Point a, Point b) {
    return std::round(feetBetween(a, b) / FeetPerMile * 100) / 100;
}

double boardingMinutes(int students) { return base::singleOf((19 + 2.6 * students) / 60); }

double schoolMinutes(int seats) { return base::singleOf((29 + 1.9 * seats) / 60); }

std::string streetName(double y) { return streets::gridStreet(y, BlockFeet); }

std::string avenueName(double x) { return streets::gridAvenue(x, BlockFeet); }

std::string addressAt(Point at) {
    const int inBlock = static_cast<int>(std::fmod(std::abs(at.x), BlockFeet) / BlockFeet * 100);
    return fmt::format("{} {}", streets::gridBlock(at.x, BlockFeet) * 100 + inBlock,
                       streetName(at.y));
}

std::string cornerAt(Point at) { return streetName(at.y) + " at " + avenueName(at.x); }

}  // namespace tools::district
