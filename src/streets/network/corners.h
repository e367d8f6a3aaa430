#pragma once

#include <string>
#include <string_view>

#include "streets/base/streetmap.h"
#include "streets/network/directedgraph.h"

namespace streets {

/// Whether two names say the same street: without North, South, East or West before them, which
/// parts a street into halves, and by any of the names that stand with semicolons between them.
[[nodiscard]] bool isSameStreet(std::string_view one, std::string_view other);
/// The first of several names.
[[nodiscard]] std::string_view firstName(std::string_view names);

/// "Fourth Street at Cliffside Drive": the halt's street and the nearest one that meets it, looked
/// for along the street both ways.
[[nodiscard]] std::string cornerAt(const StreetMap& map, const DirectedGraph& graph,
                                   const Halt& halt);

}  // namespace streets
