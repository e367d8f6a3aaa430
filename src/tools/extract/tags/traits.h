#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "streets/base/streetmap.h"
#include "tools/extract/tags/tags.h"

namespace tools::extract {

/// What tags say of a street, as a school bus meets it.
struct StreetTraits {
    streets::StreetClass kind = streets::StreetClass::Residential;
    std::string name = {};  ///< spelled out
    std::uint8_t milesPerHour = 0;
    bool forward = true;  ///< a bus may drive it in the order of its points
    bool backward = true;
    bool roundabout = false;
    std::uint16_t clearanceInches = 0;
    std::uint16_t weightTenths = 0;

    friend bool operator==(const StreetTraits&, const StreetTraits&) = default;
};

/// Nothing for what is no street, or none yet or no longer. What a bus may not use is drawn.
[[nodiscard]] std::optional<StreetTraits> streetOf(const Tags& tags);

/// What tags say of a point on a street.
struct PointTraits {
    bool signal = false;
    bool turningCircle = false;
    bool levelCrossing = false;
    bool barrier = false;  ///< no bus gets past it

    friend bool operator==(const PointTraits&, const PointTraits&) = default;
    [[nodiscard]] bool any() const { return signal || turningCircle || levelCrossing || barrier; }
};
[[nodiscard]] PointTraits pointOf(const Tags& tags);

/// What lies beside the streets; of a line that ends where it begins, or of an area of several.
[[nodiscard]] std::optional<streets::GroundKind> areaOf(const Tags& tags);
/// Of a line.
[[nodiscard]] std::optional<streets::GroundKind> lineOf(const Tags& tags);
/// The name of such a thing.
[[nodiscard]] std::string nameOf(const Tags& tags);

/// A rule for a turn, as far as buses go by it.
struct TurnTraits {
    bool only = false;   ///< the one turn that is allowed
    bool uTurn = false;  ///< back into the street that one comes from
};
[[nodiscard]] std::optional<TurnTraits> turnOf(const Tags& tags);

/// A house of a street.
struct HouseTraits {
    std::string street;  ///< spelled out
    std::string number;
};
[[nodiscard]] std::optional<HouseTraits> houseOf(const Tags& tags);

}  // namespace tools::extract
