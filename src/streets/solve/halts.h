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

/// The halt of each stop with which the whole way is the quickest, and the ways to them, the first
/// of which is none.
struct ChosenHalts {
    std::vector<Halt> halts = {};
    std::vector<Leg> ways = {};
    std::optional<std::size_t> notReached = {};  ///< the first of `stops` that no way leads to
};
[[nodiscard]] ChosenHalts chooseHalts(const Network& network, std::span<const StopHalts> stops);

}  // namespace streets
