#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "runedit/validation/checkedrun.h"
#include "runedit/validation/finding.h"
#include "runedit/validation/stoprows.h"

namespace runedit {

/// Rule: nobody rides longer than the district allows. Finds every stop with more minutes ridden
/// than `maximum`; as many are accepted.
[[nodiscard]] Findings ridesTooLong(const StopRows& stops, std::int16_t maximum);

/// The same for the stops but turn points of the stored run and the district's MaxRideTime
/// (minutes; none is 0). Raises "Overflow" (6) for a maximum beyond 16 bits.
/// Cost: one statement for the maximum, one for the stops.
[[nodiscard]] Findings Check_Run_RideTime(const CheckedRun& run,
                                          const ValidationDatabases& databases);
/// The statements that it opens of the routing file, as far as the run itself decides them.
[[nodiscard]] std::vector<std::string> rideTimeReads(const CheckedRun& run);

}  // namespace runedit
