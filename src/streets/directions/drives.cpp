#include "streets/directions/drives.h"

#include <cmath>

#include "streets/network/corners.h"
#include "streets/network/turncosts.h"

namespace streets {

namespace {

constexpr double BendDegrees = 50;
constexpr double StraightDegrees = 25;
constexpr double BitFeet = 120;
constexpr double TurnBitFeet = 150;
constexpr double ForeignFeet = 260;

bool isStreet(const Drive& drive, std::string_view name) {
    return !drive.roundabout && isSameStreet(drive.name, name);
}

class DriveMaker {
public:
    void take(const Stretch& stretch) {
        if (drives_.empty()) {
            drives_.push_back(driveOf(stretch));
            return;
        }
        if (stretch.roundabout) {
            goRound(stretch);
            return;
        }
        Drive next = driveOf(stretch);
        if (drives_.back().roundabout) {
            leaveRoundabout(next);
        } else if (stretch.uTurn) {
            next.approach = Approach::TurnBack;
            next.deadEnd = stretch.others == 0;
            drives_.push_back(next);
            return;
        } else {
            giveBitAway(next);
            giveForeignAway(next);
        }
        follow(next, stretch.others);
    }

    std::vector<Drive> drives() { return std::move(drives_); }

private:
    static Drive driveOf(const Stretch& stretch) {
        return {.name = stretch.name,
                .feet = stretch.feet,
                .headingIn = stretch.headingIn,
                .headingOut = stretch.headingOut,
                .kind = stretch.kind,
                .crossings = stretch.levelCrossing ? 1 : 0,
                .signal = stretch.signal,
                .roundabout = stretch.roundabout};
    }

    void goRound(const Stretch& stretch) {
        if (drives_.back().roundabout) {
            drives_.back().exit += stretch.others > 0 ? 1 : 0;
            extend(driveOf(stretch));
        } else {
            drives_.push_back(driveOf(stretch));
            drives_.back().approach = Approach::Roundabout;
        }
    }

    /// The way round belongs to the street that the roundabout is left on.
    void leaveRoundabout(Drive& next) {
        next.exit = drives_.back().exit + 1;
        next.feet += drives_.back().feet;
        next.crossings += drives_.back().crossings;
        next.approach = Approach::Roundabout;
        drives_.pop_back();
    }

    [[nodiscard]] double angleTo(const Drive& next) const {
        return turnAngle(drives_.back().headingOut, next.headingIn);
    }

    /// A short piece without a name belongs to the street before it where that goes straight on,
    /// otherwise to the turn.
    void giveBitAway(Drive& next) {
        const Drive bit = drives_.back();
        const bool isBit = bit.name.empty() && bit.kind != StreetClass::Ramp && bit.exit == 0 &&
                           bit.approach != Approach::TurnBack && drives_.size() > 1;
        if (!isBit || bit.feet >= TurnBitFeet) {
            return;
        }
        if (std::abs(bit.angle) < BendDegrees && bit.feet < BitFeet) {
            drives_.pop_back();
            extend(bit);
        } else if (std::abs(bit.angle) >= BendDegrees) {
            drives_.pop_back();
            next.feet += bit.feet;
            next.crossings += bit.crossings;
            next.signal = next.signal || bit.signal;
        }
    }

    /// Another name for a few feet in the middle of a street is none.
    void giveForeignAway(const Drive& next) {
        const Drive foreign = drives_.back();
        if (drives_.size() < 2 || foreign.feet >= ForeignFeet || foreign.exit > 0 ||
            foreign.approach == Approach::TurnBack) {
            return;
        }
        const Drive& before = drives_[drives_.size() - 2];
        const double angle = turnAngle(before.headingOut, next.headingIn);
        if (isStreet(before, next.name) && std::abs(angle) < BendDegrees) {
            drives_.pop_back();
            extend(foreign);
        }
    }

    void follow(Drive& next, int others) {
        if (drives_.empty() || next.approach == Approach::Roundabout) {
            drives_.push_back(next);
            return;
        }
        next.angle = angleTo(next);
        const bool bends = std::abs(next.angle) >= BendDegrees && others > 0;
        const bool isSame = isStreet(drives_.back(), next.name) || isSameRamp(next);
        if (isSame && !bends) {
            extend(next);
            return;
        }
        next.approach = isSame                                   ? Approach::Stay
                        : std::abs(next.angle) < StraightDegrees ? Approach::Straight
                                                                 : Approach::Turn;
        drives_.push_back(next);
    }

    [[nodiscard]] bool isSameRamp(const Drive& next) const {
        const Drive& before = drives_.back();
        const bool sameKind = before.kind == next.kind && before.name.empty() && next.name.empty();
        return sameKind || (before.kind == StreetClass::Ramp && next.kind == StreetClass::Ramp);
    }

    void extend(const Drive& next) {
        Drive& drive = drives_.back();
        drive.feet += next.feet;
        drive.headingOut = next.headingOut;
        drive.crossings += next.crossings;
    }

    std::vector<Drive> drives_;
};

}  // namespace

std::vector<Drive> drivesOf(std::span<const Stretch> stretches) {
    DriveMaker maker;
    for (const Stretch& stretch : stretches) {
        maker.take(stretch);
    }
    return maker.drives();
}

}  // namespace streets
