#include "map/window/spots.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "streets/district/placesearch.h"
#include "streets/network/graphnetwork.h"

namespace map {

namespace {

constexpr double CurbFeet = 20;    ///< from the middle of the street
constexpr double BesideFeet = 80;  ///< from the middle of a crossing to a stop at its corner
constexpr int Directions = 16;     ///< in which streets of a crossing are looked for

double feetBetween(geo::Feet one, geo::Feet other) {
    return std::hypot(other.x - one.x, other.y - one.y);
}

/// The curb on the right of a bus that halts there.
geo::Feet curbAt(const streets::StreetMap& map, const streets::Halt& halt) {
    const auto points = map.pointsOf(map.pieces[streets::pieceOf(halt.piece)]);
    std::size_t nearest = 1;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double detour = feetBetween(points[i - 1], halt.at) +
                              feetBetween(halt.at, points[i]) -
                              feetBetween(points[i - 1], points[i]);
        if (detour < least) {
            least = detour;
            nearest = i;
        }
    }
    const auto from = points[nearest - 1];
    const auto to = points[nearest];
    const double length = std::max(feetBetween(from, to), 1.0);
    const double aside = (streets::isBackward(halt.piece) ? -CurbFeet : CurbFeet) / length;
    return {halt.at.x + aside * (to.y - from.y), halt.at.y - aside * (to.x - from.x)};
}

/// The spots around one place.
class Around {
public:
    Around(const streets::DistrictStreets& streets, const streets::FoundPlace& place)
        : streets_(streets), place_(place) {}

    std::vector<Spot> find() && {
        if (!streets_.network().hasSides()) {
            return {{place_.text, place_.at}};
        }
        if (place_.kind == streets::FoundPlace::Kind::Address) {
            addAddress();
        } else if (place_.kind == streets::FoundPlace::Kind::Corner) {
            addCorner();
        }
        if (spots_.empty()) {
            addCurbs(place_.at, {});
        }
        return std::move(spots_);
    }

private:
    [[nodiscard]] std::vector<streets::Halt> haltsAt(geo::Feet place) const {
        return streets_.network().haltsAt(place, streets::DoorSide::Either);
    }

    void addAddress() {
        for (const auto& halt : haltsAt(place_.at)) {
            const bool isOwn = halt.rightSide && halt.offStreet > 1;
            spots_.push_back({place_.text, isOwn ? place_.at : curbAt(*streets_.map(), halt),
                              halt.rightSide ? "" : streets_.network().streetAt(halt)});
        }
    }

    /// Beside the crossing, on the street that was named first.
    void addCorner() {
        const auto street = place_.text.substr(0, place_.text.find(" at "));
        for (int i = 0; i < Directions && spots_.size() < 2; ++i) {
            const double angle = 2 * std::numbers::pi * i / Directions;
            addCurbs({place_.at.x + BesideFeet * std::cos(angle),
                      place_.at.y + BesideFeet * std::sin(angle)},
                     street);
        }
    }

    /// Of any street where none is named.
    void addCurbs(geo::Feet at, std::string_view street) {
        for (const auto& halt : haltsAt(at)) {
            const auto curb = curbAt(*streets_.map(), halt);
            const bool isThere = feetBetween(halt.at, place_.at) < 2 * BesideFeet &&
                                 streets_.network().streetAt(halt) == street;
            if (street.empty() || (isThere && !isTaken(curb))) {
                spots_.push_back({place_.text, curb});
            }
        }
    }

    [[nodiscard]] bool isTaken(geo::Feet at) const {
        return std::ranges::any_of(
            spots_, [at](const Spot& spot) { return feetBetween(spot.at, at) < CurbFeet; });
    }

    const streets::DistrictStreets& streets_;
    const streets::FoundPlace& place_;
    std::vector<Spot> spots_;
};

}  // namespace

std::vector<Spot> spotsFor(const streets::DistrictStreets& streets, std::string_view words,
                           std::size_t mostPlaces) {
    std::vector<Spot> all;
    for (const auto& place : streets::findPlaces(streets, words, mostPlaces)) {
        for (auto& spot : Around(streets, place).find()) {
            all.push_back(std::move(spot));
        }
    }
    return all;
}

}  // namespace map
