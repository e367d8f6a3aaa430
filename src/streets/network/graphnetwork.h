#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "streets/base/streetmap.h"
#include "streets/network/network.h"
#include "streets/rules/drivingrules.h"

namespace streets {

/// A piece of the map in one of its directions, as a network over the map numbers it.
[[nodiscard]] constexpr DirectedPiece directed(std::uint32_t piece, bool backward) {
    return 2 * piece + (backward ? 1U : 0U);
}
[[nodiscard]] constexpr std::uint32_t pieceOf(DirectedPiece directed) { return directed / 2; }
[[nodiscard]] constexpr bool isBackward(DirectedPiece directed) { return directed % 2 != 0; }

/// The network of a map by the rules, which keeps the map; no bus drives the closed pieces.
[[nodiscard]] std::unique_ptr<const Network> graphNetwork(
    std::shared_ptr<const StreetMap> map, const DrivingRules& rules,
    std::span<const std::uint32_t> closedPieces = {});

}  // namespace streets
