#include "streets/directions/sentences.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

#include "streets/network/corners.h"

namespace streets {

namespace {

constexpr double ToldInMiles = 475;  // feet
constexpr double FeetStep = 50;
constexpr double BearDegrees = 50;
constexpr double SharpDegrees = 135;

std::string nameOf(const Drive& drive) {
    if (!drive.name.empty()) {
        return std::string(firstName(drive.name));
    }
    if (drive.roundabout) {
        return "the roundabout";
    }
    switch (drive.kind) {
        case StreetClass::Ramp:
            return "the ramp";
        case StreetClass::Service:
            return "the drive";
        default:
            return "the street without a name";
    }
}

std::string_view sideOf(const Drive& drive) { return drive.angle < 0 ? "left" : "right"; }

std::string turnOf(const Drive& drive) {
    const double angle = std::abs(drive.angle);
    const std::string_view manner = angle < BearDegrees ? "bear " : "turn ";
    const std::string_view degree = angle >= SharpDegrees ? "sharply " : "";
    return fmt::format("{}{}{} onto {}", manner, degree, sideOf(drive), nameOf(drive));
}

std::string ordinal(int number) {
    constexpr std::array Words{"first", "second", "third", "fourth", "fifth", "sixth"};
    const auto last = static_cast<int>(Words.size());
    return number <= last ? Words[static_cast<std::size_t>(std::max(number, 1) - 1)]
                          : fmt::format("{}th", number);
}

bool isFreeway(StreetClass kind) {
    return kind == StreetClass::Motorway || kind == StreetClass::Trunk;
}

/// What is done where the drive begins, in small letters.
std::string actionOf(const Drive& drive, bool goesOn) {
    const auto heading = headingName(drive.headingIn);
    switch (drive.approach) {
        case Approach::Begin:
        case Approach::TurnBack:
            return fmt::format("{} {} on {}", goesOn ? "continue" : "go", heading, nameOf(drive));
        case Approach::Straight:
            if (drive.kind == StreetClass::Ramp) {
                return "take the ramp straight ahead";
            }
            return fmt::format("{} onto {}, go {}", isFreeway(drive.kind) ? "merge" : "continue",
                               nameOf(drive), heading);
        case Approach::Stay:
            return fmt::format("stay on {}, it turns {}", nameOf(drive), sideOf(drive));
        case Approach::Roundabout:
            return drive.exit == 0
                       ? "enter the roundabout"
                       : fmt::format("at the roundabout take the {} exit onto {}, go {}",
                                     ordinal(drive.exit), nameOf(drive), heading);
        default:
            return drive.kind == StreetClass::Ramp
                       ? fmt::format("take the ramp on the {}", sideOf(drive))
                       : fmt::format("{}, go {}", turnOf(drive), heading);
    }
}

std::string capitalised(std::string text) {
    text.front() = static_cast<char>(text.front() - 'a' + 'A');
    return text;
}

bool isAtLight(const Drive& drive) {
    return drive.signal && (drive.approach == Approach::Turn || drive.approach == Approach::Stay);
}

}  // namespace

std::string_view headingName(double degrees) {
    constexpr std::array<std::string_view, 4> Names{"north", "east", "south", "west"};
    const auto quarter = static_cast<std::size_t>(std::lround(degrees / 90));
    return Names[quarter % Names.size()];
}

std::string wayLength(double feet) {
    if (feet < ToldInMiles) {
        return fmt::format("{:.0f} feet", std::max(std::round(feet / FeetStep), 1.0) * FeetStep);
    }
    return fmt::format("{:.1f} miles", feet / FeetPerMile);
}

std::string sentenceOf(const Drive& drive, bool goesOn) {
    const std::string action = actionOf(drive, goesOn);
    return isAtLight(drive) ? "At the light " + action : capitalised(action);
}

std::string turnBackSentence(const Drive& drive) {
    if (drive.deadEnd) {
        return "Turn round at the end of " + nameOf(drive);
    }
    return fmt::format("{} a U-turn on {}", drive.signal ? "At the light make" : "Make",
                       nameOf(drive));
}

std::string shortSentenceOf(const Drive& drive) {
    switch (drive.approach) {
        case Approach::Turn:
        case Approach::Stay:
            return fmt::format("{} {}", sideOf(drive), nameOf(drive));
        case Approach::Roundabout:
            return fmt::format("exit {} {}", std::max(drive.exit, 1), nameOf(drive));
        default:
            return fmt::format("{} {}", headingName(drive.headingIn), nameOf(drive));
    }
}

}  // namespace streets
