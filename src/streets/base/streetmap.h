#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/geo/projection.h"

namespace streets {

/// What kind of street a piece is, the broadest first.
enum class StreetClass : std::uint8_t {
    Motorway,
    Trunk,
    Primary,
    Secondary,
    Tertiary,
    Unclassified,
    Residential,
    Ramp,
    Service,  ///< alleys, drives, parking aisles
    Footway   ///< drawn, never driven
};
inline constexpr std::size_t StreetClasses = 10;

/// Where pieces meet.
struct Node {
    geo::Feet at;
    bool signal = false;
    bool turningCircle = false;
    bool levelCrossing = false;
};

/// A street from one node to the next one, without a crossing between.
struct Piece {
    std::uint32_t from = 0;  ///< node
    std::uint32_t to = 0;    ///< node
    std::uint32_t name = 0;  ///< index into the names; 0 has none
    std::uint32_t firstPoint = 0;
    std::uint32_t points = 0;  ///< both ends count
    float feet = 0;            ///< along the bends
    StreetClass kind = StreetClass::Residential;
    std::uint8_t milesPerHour = 0;  ///< the posted limit; 0 where none is known
    bool forward = true;            ///< a bus may drive it from `from` to `to`
    bool backward = true;           ///< and back
    bool roundabout = false;
    bool reachable = true;  ///< the rest of the district is reached from here, and here from there
    std::uint16_t clearanceInches = 0;  ///< 0: no limit known
    std::uint16_t weightTenths = 0;     ///< of a short ton; 0: no limit known
};

/// A turn at a node that is forbidden, or the only one allowed.
struct TurnRule {
    std::uint32_t from = 0;  ///< piece
    std::uint32_t node = 0;
    std::uint32_t to = 0;  ///< piece
    bool only = false;
};

enum class GroundKind : std::uint8_t { Water, Park, Wood, School, Building, Pitch, Rail, Stream };

/// What lies beside the streets: an area of one or more rings, or a line (rail, stream).
struct GroundShape {
    GroundKind kind = GroundKind::Park;
    std::uint32_t name = 0;
    std::vector<std::vector<geo::Feet>> rings;  ///< a line has one, open
};

struct HouseNumber {
    std::uint32_t name = 0;  ///< of the street
    std::string number;
    geo::Feet at;
};

/// Smallest upright rectangle around places.
struct Box {
    geo::Feet low;
    geo::Feet high;
};

/// The streets of a district as a street file holds them: plain values on the district's plane.
struct StreetMap {
    geo::Centre centre;
    std::string attribution;         ///< stands on every picture and print
    std::vector<std::string> names;  ///< spelled out ("North Broadway"); the first is empty
    std::vector<Node> nodes;
    std::vector<Piece> pieces;
    std::vector<geo::Feet> points;  ///< of all pieces
    std::vector<TurnRule> turnRules;
    std::vector<GroundShape> ground;
    std::vector<HouseNumber> houses;

    [[nodiscard]] std::span<const geo::Feet> pointsOf(const Piece& piece) const;
    [[nodiscard]] const std::string& nameOf(const Piece& piece) const { return names[piece.name]; }
};

}  // namespace streets
