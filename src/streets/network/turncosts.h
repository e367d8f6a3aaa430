#pragma once

#include "streets/base/streetmap.h"
#include "streets/rules/drivingrules.h"

namespace streets {

/// What counts of a street at a turn.
struct TurnArm {
    StreetClass kind = StreetClass::Residential;
    bool roundabout = false;
    double heading = 0;  ///< degrees: of a bus at its end before the turn, at its begin after it
};

/// The streets beside those two.
struct OtherArms {
    int count = 0;
    StreetClass broadest = StreetClass::Footway;
};

/// -180 to 180 degrees; left is negative.
[[nodiscard]] double turnAngle(double headingBefore, double headingAfter);

/// The seconds of a turn that does not lead back.
[[nodiscard]] double turnSeconds(const TurnArm& before, const TurnArm& after,
                                 const OtherArms& others, bool signal, const TurnSeconds& costs);

}  // namespace streets
