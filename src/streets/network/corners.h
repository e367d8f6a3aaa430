#pragma once

#include <string>
#include <string_view>

#include "streets/base/streetmap.h"
#include "streets/network/directedgraph.h"

namespace streets {

/// A street's name without North, South, East or West before it: what both its halves have.
[[nodiscard]] std::string_view plainName(std::string_view name);

/// "Fourth Street at Cliffside Drive": the halt's street and the nearest one that meets it, looked
/// for along the street both ways.
[[nodiscard]] std::string cornerAt(const StreetMap& map, const DirectedGraph& graph,
                                   const Halt& halt);

}  // namespace streets
