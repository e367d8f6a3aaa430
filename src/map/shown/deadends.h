#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "map/shown/runscene.h"

namespace map {

/// A dead end in which a bus turns.
struct DeadEnd {
    std::size_t stop = 0;     ///< the one that it is driven into for
    std::string street = {};  ///< "" where it has no name
    std::optional<geo::Feet> mouth =
        {};  ///< on the street that it leaves; none within a quarter mile
};

/// The dead end on the way to a stop, one of the solution's.
[[nodiscard]] std::optional<DeadEnd> deadEndBefore(const RunWay& way, std::size_t stop);

}  // namespace map
