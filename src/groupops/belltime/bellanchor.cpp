#include "groupops/belltime/bellanchor.h"

#include "runedit/times/mdl_Time_Calc_Routines.h"

namespace groupops {

namespace {

base::Date plusMinutes(base::Date time, std::int64_t minutes) {
    return time.plusSeconds(minutes * 60);
}

/// From the end of a run home to its bell, from the bell of a run to school to its end.
std::int32_t gapOf(bool pickup, base::Date end, base::Date bell) {
    return pickup ? runedit::DiffMinutes(bell, end) : runedit::DiffMinutes(end, bell);
}

}  // namespace

std::optional<BellAnchor> bellAnchor(const BellMethod& method, const BellRun& run,
                                     base::Date newBell, std::int32_t gapBefore) {
    std::int32_t gap = run.bell ? gapBefore : 1;
    if (method.gap == BellMethod::Gap::FixedMinutes) {
        return BellAnchor{plusMinutes(newBell, run.pickup ? -method.minutes : method.minutes), gap};
    }
    const base::Date oldBell = run.bell.value_or(newBell);
    if (newBell.timeValue() != oldBell.timeValue()) {
        if (!run.end) {
            return std::nullopt;
        }
        gap = gapOf(run.pickup, *run.end, oldBell);
    }
    return BellAnchor{plusMinutes(newBell, run.pickup ? gap : -gap), gap};
}

}  // namespace groupops
