#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "streets/order/stopcosts.h"

namespace streets {

/// As many stops between two fixed ones as can be ordered the best way for certain.
inline constexpr std::size_t MostStopsForBest = 12;

/// Stops that must be the first or the last of those that may change places.
struct OrderEnds {
    std::optional<std::size_t> first = {};
    std::optional<std::size_t> last = {};
};

/// The order of the smallest cost, in which fixed stops keep their places. At most MostStopsForBest
/// stops between two fixed ones. Empty where no order leads through.
[[nodiscard]] std::vector<std::size_t> bestOrder(const StopCosts& costs,
                                                 const std::vector<bool>& fixed,
                                                 const OrderEnds& ends = {});

}  // namespace streets
