#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "streets/solve/solve.h"

namespace streets {

/// A stop and the halts that may serve it.
struct StopHalts {
    std::size_t stop = 0;  ///< its place in the run, from 0
    std::vector<Halt> halts = {};
};

/// The halts of all stops of a run. Stops that have none are appended to `unserved`; on a network
/// without sides one that has no place is left out.
[[nodiscard]] std::vector<StopHalts> haltsOf(const Network& network, const RunToSolve& run,
                                             std::vector<Unserved>& unserved);

/// The halt of each stop with which the whole way is the quickest. Where no way leads on, the place
/// in `stops` that cannot be reached.
struct ChosenHalts {
    std::vector<Halt> halts = {};
    std::optional<std::size_t> notReached = {};
};
[[nodiscard]] ChosenHalts chooseHalts(const Network& network, std::span<const StopHalts> stops);

}  // namespace streets
