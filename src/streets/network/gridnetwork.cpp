#include "streets/network/gridnetwork.h"

#include <cmath>
#include <mutex>
#include <unordered_map>

#include <fmt/format.h>

namespace streets {

namespace {

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

/// Names that stay where they are once they have been asked for.
class NamesByBlock {
public:
    using Maker = std::string (*)(double feet, double blockFeet);
    NamesByBlock(Maker maker, double blockFeet) : maker_(maker), blockFeet_(blockFeet) {}

    std::string_view at(double feet) {
        const std::scoped_lock lock(mutex_);
        const auto [found, isNew] = names_.try_emplace(gridBlock(feet, blockFeet_));
        if (isNew) {
            found->second = maker_(feet, blockFeet_);
        }
        return found->second;
    }

private:
    Maker maker_;
    double blockFeet_;
    std::mutex mutex_;
    std::unordered_map<int, std::string> names_;
};

Stretch stretchOf(std::string_view name, double feet, double heading) {
    return {.name = name, .feet = feet, .headingIn = heading, .headingOut = heading};
}

class GridNetwork : public Network {
public:
    explicit GridNetwork(const GridRule& rule)
        : rule_(rule), streets_(gridStreet, rule.blockFeet), avenues_(gridAvenue, rule.blockFeet) {}

    [[nodiscard]] std::vector<Halt> haltsAt(geo::Feet place, DoorSide) const override {
        return {{.at = place}};
    }

    [[nodiscard]] std::optional<Leg> leg(const Halt& from, const Halt& to) const override {
        const double east = to.at.x - from.at.x;
        const double north = to.at.y - from.at.y;
        const Travel travel = between(from, to);
        Leg leg{.seconds = travel.seconds, .feet = travel.feet, .line = {from.at}};
        if (east != 0) {
            leg.stretches.push_back(
                stretchOf(streets_.at(from.at.y), std::abs(east), east > 0 ? 90 : 270));
            leg.line.push_back({to.at.x, from.at.y});
        }
        if (north != 0) {
            leg.stretches.push_back(
                stretchOf(avenues_.at(to.at.x), std::abs(north), north > 0 ? 0 : 180));
            leg.line.push_back(to.at);
        }
        return leg;
    }

    [[nodiscard]] std::vector<Travel> matrix(std::span<const Halt> from,
                                             std::span<const Halt> to) const override {
        std::vector<Travel> travels;
        travels.reserve(from.size() * to.size());
        for (const Halt& begin : from) {
            for (const Halt& end : to) {
                travels.push_back(between(begin, end));
            }
        }
        return travels;
    }

    [[nodiscard]] std::string cornerAt(const Halt& halt) const override {
        return fmt::format("{} at {}", streets_.at(halt.at.y), avenues_.at(halt.at.x));
    }
    [[nodiscard]] std::string streetAt(const Halt& halt) const override {
        return std::string(streets_.at(halt.at.y));
    }
    [[nodiscard]] bool hasSides() const override { return false; }

private:
    [[nodiscard]] Travel between(const Halt& from, const Halt& to) const {
        const double feet = std::abs(to.at.x - from.at.x) + std::abs(to.at.y - from.at.y);
        return {.seconds = feet / rule_.feetPerSecond, .feet = feet};
    }

    GridRule rule_;
    mutable NamesByBlock streets_;
    mutable NamesByBlock avenues_;
};

}  // namespace

std::unique_ptr<const Network> gridNetwork(const GridRule& rule) {
    return std::make_unique<GridNetwork>(rule);
}

int gridBlock(double feet, double blockFeet) {
    return static_cast<int>(std::floor(feet / blockFeet)) + 1;
}

std::string gridStreet(double y, double blockFeet) {
    return ordinal(gridBlock(y, blockFeet)) + " Street";
}

std::string gridAvenue(double x, double blockFeet) {
    return ordinal(gridBlock(x, blockFeet)) + " Avenue";
}

}  // namespace streets
