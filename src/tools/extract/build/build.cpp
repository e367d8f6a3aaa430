#include "tools/extract/build/build.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "streets/base/streetnames.h"
#include "tools/extract/build/core.h"
#include "tools/extract/build/ground.h"
#include "tools/extract/build/nametable.h"
#include "tools/extract/build/pieces.h"
#include "tools/extract/build/turns.h"

namespace tools::extract {

namespace {

constexpr double FeetPerMile = 5280;

std::vector<geo::Feet> placesOf(const Extract& extract, const geo::Centre& centre) {
    const geo::Projection projection(centre);
    std::vector<geo::Feet> places;
    places.reserve(extract.nodes.size());
    for (const ExtractNode& node : extract.nodes) {
        places.push_back(projection.toFeet(node.at));
    }
    return places;
}

std::vector<streets::HouseNumber> housesOf(const Extract& extract, const geo::Centre& centre,
                                           std::span<const Address> addresses, NameTable& names) {
    const geo::Projection projection(centre);
    std::vector<streets::HouseNumber> houses;
    for (const ExtractHouse& house : extract.houses) {
        houses.push_back({names.numberOf(house.traits.street), house.traits.number,
                          projection.toFeet(house.at)});
    }
    for (const Address& address : addresses) {
        houses.push_back(
            {names.numberOf(streets::spelledOut(address.street)), address.number, address.at});
    }
    const auto key = [](const streets::HouseNumber& house) {
        return std::tie(house.name, house.number, house.at.x, house.at.y);
    };
    std::ranges::sort(houses, {}, key);
    houses.erase(
        std::unique(houses.begin(), houses.end(),
                    [&](const auto& one, const auto& next) { return key(one) == key(next); }),
        houses.end());
    return houses;
}

/// Empties the extract of what is not needed any more.
BuiltStreets joinedStreets(Extract& extract, const geo::Centre& centre,
                           std::span<const Address> addresses) {
    const auto places = placesOf(extract, centre);
    extract.nodes = {};
    NameTable names;
    BuiltStreets built;
    CutStreets cut = cutStreets(extract, places, centre.feet, names);
    auto turns = turnRulesOf(extract, cut);
    built.turnRules = turns.taken + turns.refused;
    built.turnRulesTaken = turns.taken;
    built.map.centre = centre;
    built.map.attribution = "© OpenStreetMap contributors";
    built.map.nodes = std::move(cut.nodes);
    built.map.pieces = std::move(cut.pieces);
    built.map.points = std::move(cut.points);
    built.map.turnRules = std::move(turns.rules);
    built.map.ground = groundOf(extract, places, names);
    built.map.houses = housesOf(extract, centre, addresses, names);
    built.map.names = names.names();
    return built;
}

}  // namespace

BuiltStreets streetsOf(Extract extract, const geo::Centre& centre,
                       std::span<const Address> addresses) {
    BuiltStreets built = joinedStreets(extract, centre, addresses);
    extract = {};
    built.unreachable = markReachable(built.map);
    return built;
}

double milesOf(const streets::StreetMap& map) {
    double feet = 0;
    for (const streets::Piece& piece : map.pieces) {
        feet += piece.reachable ? piece.feet : 0;
    }
    return feet / FeetPerMile;
}

}  // namespace tools::extract
