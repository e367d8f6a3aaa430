#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/notcopied.h"
#include "platform/geo/projection.h"
#include "streets/base/streetmap.h"

namespace streets {

/// A street in one of its directions; the network's own number.
using DirectedPiece = std::uint32_t;

/// A place where a bus can halt, driving one way.
struct Halt {
    DirectedPiece piece = 0;
    double along = 0;       ///< feet from the beginning of the directed piece
    geo::Feet at;           ///< on the middle of the street
    double offStreet = 0;   ///< feet from there to the place that was asked for
    bool rightSide = true;  ///< that place lies on the right of a bus that halts here
};

/// A stretch of the way driven: one street piece, or the part of it that is driven.
struct Stretch {
    std::string_view name = {};  ///< the network's; empty where the street has none
    double feet = 0;
    double headingIn = 0;   ///< degrees at its beginning: 0 is north, 90 east
    double headingOut = 0;  ///< at its end
    StreetClass kind = StreetClass::Residential;
    bool roundabout = false;
    // What is met where it begins; not so for the first stretch of a leg.
    int others = 0;  ///< streets to choose from, besides this one and the way back
    bool signal = false;
    bool levelCrossing = false;
    bool uTurn = false;
    bool unwanted = false;  ///< a U-turn that the district's rules would not have
};

/// The way from one halt to the next one.
struct Leg {
    double seconds = 0;
    double feet = 0;
    double reluctance = 0;  ///< seconds that count besides, though nobody drives them: see Travel
    std::vector<Stretch> stretches = {};
    std::vector<geo::Feet> line =
        {};  ///< along the middle of the streets, without equal neighbours
};

/// A way's time and length; both are infinite where nothing leads there.
struct Travel {
    double seconds = std::numeric_limits<double>::infinity();
    double feet = std::numeric_limits<double>::infinity();
    /// Seconds that the choice of a way counts besides, to keep off alleys and dead ends. The best
    /// way has the smallest sum of both.
    double reluctance = 0;
};

/// On which side of the street a stop wants the bus's door, which is on its right.
enum class DoorSide {
    Either,
    Right,   ///< the stop lies on the right of the bus
    Passing  ///< no stop: the bus only comes by, in any direction of any street there
};

/// What a district drives on. Places are feet on its plane. Made once, then read by any thread.
class Network : private base::NotCopied {
public:
    virtual ~Network();

    /// The halts that serve a place, the nearest street first: one or both directions of it. Empty
    /// where no street that a bus may drive is near enough.
    [[nodiscard]] virtual std::vector<Halt> haltsAt(geo::Feet place, DoorSide side) const = 0;

    /// The quickest way, with turns; a bus goes on in the direction in which it halted. Nothing
    /// where none leads there.
    [[nodiscard]] virtual std::optional<Leg> leg(const Halt& from, const Halt& to) const = 0;

    /// The same to several halts at once.
    [[nodiscard]] virtual std::vector<std::optional<Leg>> legs(const Halt& from,
                                                               std::span<const Halt> to) const;

    /// Row by row: from each of the first to each of the second.
    [[nodiscard]] virtual std::vector<Travel> matrix(std::span<const Halt> from,
                                                     std::span<const Halt> to) const = 0;

    /// "Fourth Street at Cliffside Drive": the street and the nearest one that crosses it.
    [[nodiscard]] virtual std::string cornerAt(const Halt& halt) const = 0;
    /// "Fourth Street", or empty.
    [[nodiscard]] virtual std::string streetAt(const Halt& halt) const = 0;

    /// Whether the sides of a street, turns and one-ways count here.
    [[nodiscard]] virtual bool hasSides() const = 0;
};

}  // namespace streets
