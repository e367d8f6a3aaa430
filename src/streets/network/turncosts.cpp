#include "streets/network/turncosts.h"

#include <algorithm>
#include <cmath>

namespace streets {

namespace {

constexpr double StraightDegrees = 40;

enum class Way { Left, Straight, Right };

Way wayOf(double angle) {
    if (std::abs(angle) < StraightDegrees) {
        return Way::Straight;
    }
    return angle < 0 ? Way::Left : Way::Right;
}

bool isArterial(StreetClass kind) { return kind <= StreetClass::Secondary; }

bool isFreeway(StreetClass kind) {
    return kind == StreetClass::Motorway || kind == StreetClass::Ramp;
}

double atSignal(Way way, bool overArterial, const TurnSeconds& costs) {
    if (way == Way::Right) {
        return costs.signalRight;
    }
    if (way == Way::Straight) {
        return costs.signalStraight;
    }
    return overArterial ? costs.signalLeftOverArterial : costs.signalLeft;
}

double straight(StreetClass own, const OtherArms& others, const TurnSeconds& costs) {
    const bool isCrossing = others.count > 1;
    if (!isCrossing || others.broadest > own) {
        return 0;
    }
    return isArterial(others.broadest) && !isArterial(own) ? costs.straightOverArterial
                                                           : costs.straightOverLike;
}

double left(StreetClass before, StreetClass after, const OtherArms& others,
            const TurnSeconds& costs) {
    if (!isArterial(before) && (isArterial(after) || isArterial(others.broadest))) {
        return costs.leftOntoArterial;
    }
    return isArterial(before) ? costs.leftOffArterial : costs.left;
}

double withoutSignal(Way way, StreetClass before, StreetClass after, const OtherArms& others,
                     const TurnSeconds& costs) {
    switch (way) {
        case Way::Straight:
            return straight(std::max(before, after), others, costs);
        case Way::Right:
            return isArterial(after) && !isArterial(before) ? costs.rightOntoArterial : costs.right;
        default:
            return left(before, after, others, costs);
    }
}

}  // namespace

double turnAngle(double headingBefore, double headingAfter) {
    const double angle = headingAfter - headingBefore;
    return angle - 360 * std::round(angle / 360);
}

double turnSeconds(const TurnArm& before, const TurnArm& after, const OtherArms& others,
                   bool signal, const TurnSeconds& costs) {
    if (others.count == 0) {
        return 0;
    }
    if (before.roundabout || after.roundabout) {
        return before.roundabout ? 0 : costs.right;
    }
    const Way way = wayOf(turnAngle(before.heading, after.heading));
    if (way == Way::Straight && (isFreeway(before.kind) || isFreeway(after.kind)) && !signal) {
        return 0;
    }
    if (signal) {
        const bool overArterial = isArterial(before.kind) || isArterial(after.kind);
        return atSignal(way, overArterial, costs);
    }
    return withoutSignal(way, before.kind, after.kind, others, costs);
}

}  // namespace streets
