#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "runedit/validation/checkedrun.h"
#include "runedit/validation/finding.h"
#include "runedit/validation/stoprows.h"

namespace runedit {

struct PassengerCount {
    Findings findings;
    std::int16_t total = 0;  ///< passengers of all stops
};

/// Rule: nobody rides without a seat (`capacity` of the run). Counts the passengers from stop to
/// stop in the order given and finds every stop up to which there are more than seats; as many as
/// seats are accepted. Raises "Overflow" (6) where the count leaves 16 bits.
[[nodiscard]] PassengerCount countPassengers(const CheckedRun& run, const StopRows& regularStops);

/// The same for the stored run; the total becomes the run's Total_Students.
/// Cost: one statement for the stops, one for the run, and a write where the total is a new one.
[[nodiscard]] Findings Check_NumPassengers(const CheckedRun& run,
                                           const ValidationDatabases& databases);
/// The statements that it opens of the routing file, as far as the run itself decides them.
[[nodiscard]] std::vector<std::string> passengerReads(const CheckedRun& run);

}  // namespace runedit
