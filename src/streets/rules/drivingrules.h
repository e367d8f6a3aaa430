#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "streets/base/streetmap.h"

namespace streets {

/// What a turn costs, in seconds, beside the driving: slowing down, waiting, turning. Arterials are
/// secondary streets and broader ones.
struct TurnSeconds {
    double right = 3;
    double rightOntoArterial = 6;
    double left = 5;
    double leftOffArterial = 10;
    double leftOntoArterial = 18;  ///< across the traffic of both its directions
    double straightOverLike = 3;
    double straightOverArterial = 14;  ///< from a smaller street
    double signalRight = 6;
    double signalStraight = 10;
    double signalLeft = 14;
    double signalLeftOverArterial = 20;  ///< from or onto one
    double uTurn = 45;                   ///< where U-turns are allowed
    double deadEnd = 25;                 ///< turning round where the street ends

    friend bool operator==(const TurnSeconds&, const TurnSeconds&) = default;
};

/// By what a district's buses drive. A district that has measured some runs sets the figures.
struct DrivingRules {
    std::array<double, StreetClasses> milesPerHour{55, 45, 35, 32, 28, 25, 20, 25, 10, 0};
    TurnSeconds turns = {};
    bool uTurns = false;
    std::vector<std::uint32_t> uTurnsAt =
        {};  ///< nodes of the map where they are allowed at any rate
    /// Otherwise a stop that lies in one is still served, and told.
    bool turnsInDeadEnds = true;
    bool alleys = true;           ///< service streets may be driven
    double alleyReluctance = 20;  ///< seconds that a way may be longer to save one
    double busHeightInches = 126;
    double busWeightTons = 16.5;  ///< short tons
    double farthestFeet = 1000;   ///< from a stop to the street that it is served from

    friend bool operator==(const DrivingRules&, const DrivingRules&) = default;
};

/// The rules of the section [Streets] of a settings text; what it does not name stays as above.
/// Speeds are SpeedMotorway, SpeedTrunk … SpeedService (miles an hour); turns are TurnRight,
/// TurnRightOntoArterial … TurnDeadEnd (seconds); UTurns, DeadEndTurns and Alleys are yes or no;
/// AlleyReluctance (seconds), BusHeight (inches), BusWeight (short tons), FarthestStop (feet).
/// Raises base::RunTimeError for a figure that is none or cannot be.
[[nodiscard]] DrivingRules drivingRulesIn(std::string_view settings);

}  // namespace streets
