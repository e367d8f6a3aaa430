#pragma once

#include <stop_token>
#include <string>
#include <vector>

#include "map/shown/runscene.h"
#include "streets/network/network.h"

namespace map {

/// For each trouble of a run a sentence: how it is cured and what that costs in minutes; "" where
/// nobody can say. Solves the run many times: not for the thread of a form. `rideMinutes` is the
/// longest ride allowed, 0 for none.
[[nodiscard]] std::vector<std::string> curesOf(const streets::Network& network,
                                               const ShownRun& shown, double rideMinutes,
                                               const std::stop_token& stop);

}  // namespace map
