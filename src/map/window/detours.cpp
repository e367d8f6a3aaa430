#include "map/window/detours.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "map/shown/districtground.h"
#include "platform/base/text.h"
#include "streets/district/closedstreets.h"
#include "streets/network/graphnetwork.h"

namespace map {

namespace {

double distance(geo::Feet one, geo::Feet other) {
    return std::hypot(other.x - one.x, other.y - one.y);
}

std::optional<streets::Halt> streetAt(const streets::DistrictStreets& streets, geo::Feet at,
                                      double within) {
    if (streets.map() == nullptr) {
        return std::nullopt;
    }
    const auto halts = streets.network().haltsAt(at, streets::DoorSide::Either);
    return halts.empty() || halts.front().offStreet > within ? std::nullopt
                                                             : std::optional(halts.front());
}

std::vector<std::uint32_t> piecesHaltedOn(const RunWay& way) {
    std::vector<std::uint32_t> pieces;
    for (const auto& stop : way.drawn) {
        if (stop.halt) {
            pieces.push_back(streets::pieceOf(stop.halt->piece));
        }
    }
    return pieces;
}

bool contains(const std::vector<std::uint32_t>& all, std::uint32_t one) {
    return std::ranges::find(all, one) != all.end();
}

std::uint32_t nearerEnd(const streets::StreetMap& map, const streets::Piece& piece, geo::Feet at) {
    return distance(map.nodes[piece.from].at, at) <= distance(map.nodes[piece.to].at, at)
               ? piece.from
               : piece.to;
}

}  // namespace

std::optional<DetourOffer> detoursAt(const streets::DistrictStreets& streets, const RunWay& way,
                                     geo::Feet at, double within) {
    const auto halt = streetAt(streets, at, within);
    if (!halt) {
        return std::nullopt;
    }
    const auto& map = *streets.map();
    const auto id = streets::pieceOf(halt->piece);
    const auto& piece = map.pieces[id];
    const std::string name = map.nameOf(piece).empty() ? "this street" : map.nameOf(piece);
    const auto halted = piecesHaltedOn(way);
    DetourOffer offer{
        .street = {.street = name},
        .uTurn = {.street = streets.network().cornerAt(*halt), .uTurn = nearerEnd(map, piece, at)}};
    offer.street.avoided = map.nameOf(piece).empty()
                               ? std::vector{id}
                               : streets::closedPieces(map, {.street = map.nameOf(piece)});
    std::erase_if(offer.street.avoided, [&](std::uint32_t one) { return contains(halted, one); });
    if (!contains(halted, id)) {
        offer.block = {.street = "a block of " + name, .avoided = {id}};
    }
    return offer;
}

std::vector<std::size_t> stepsAt(const streets::DistrictStreets& streets,
                                 const std::vector<DetourStep>& steps, geo::Feet at,
                                 double within) {
    std::vector<std::size_t> found;
    const auto halt = streetAt(streets, at, within);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const bool isAvoided = halt && contains(steps[i].avoided, streets::pieceOf(halt->piece));
        const bool isTurn =
            steps[i].uTurn && distance(streets.map()->nodes[*steps[i].uTurn].at, at) <= 2 * within;
        if (isAvoided || isTurn) {
            found.push_back(i);
        }
    }
    return found;
}

std::string detourText(const std::vector<DetourStep>& steps) {
    return base::joined(steps, " ", [](const auto& step) {
        return fmt::format("{} {}.", step.uTurn ? "U-turn allowed at" : "Avoids", step.street);
    });
}

Detoured withDetours(const std::shared_ptr<const streets::DistrictStreets>& streets,
                     const std::vector<DetourStep>& steps, const MappedRun& run) {
    streets::Detour detour;
    for (const auto& step : steps) {
        detour.avoided.insert(detour.avoided.end(), step.avoided.begin(), step.avoided.end());
        if (step.uTurn) {
            detour.uTurns.push_back(*step.uTurn);
        }
    }
    Detoured found{.streets = steps.empty() ? streets : streets->with(detour)};
    found.ground = groundOf(found.streets);
    found.way = wayOf(found.streets->network(), run);
    return found;
}

}  // namespace map
