#pragma once

#include <cstdint>
#include <optional>

#include "platform/base/date.h"

namespace groupops {

/// How a run's new times follow from its new bell time.
struct BellMethod {
    enum class Gap { Same, FixedMinutes };

    Gap gap = Gap::Same;       ///< the run's own span to its bell, or `minutes` for all
    std::int32_t minutes = 0;  ///< before the bell for runs to school, after it for runs home
    bool fromEnd = false;      ///< the time found is the run's end; otherwise it is its start
};

/// What of a run decides its new anchor time. Nothing stands for Null.
struct BellRun {
    bool pickup = false;
    std::optional<base::Date> bell;
    std::optional<base::Date> end;
};

/// The time that a run is timed from, and the gap that goes over to the next run.
struct BellAnchor {
    base::Date time;
    std::int32_t gapMinutes = 0;
};

/// The anchor for a new bell time (a time of day). With the same gap it lies as far from the new
/// bell as the run's end did from the old one; a run without a bell time has a gap of 1 minute. A
/// run whose bell stays the same takes over `gapBefore`, the gap of the run before it: that is
/// meant. Nothing where the gap is asked for and the run has no end.
[[nodiscard]] std::optional<BellAnchor> bellAnchor(const BellMethod& method, const BellRun& run,
                                                   base::Date newBell, std::int32_t gapBefore);

}  // namespace groupops
