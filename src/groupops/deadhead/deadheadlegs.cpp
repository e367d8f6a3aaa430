#include "groupops/deadhead/deadheadlegs.h"

#include "runedit/times/mdl_Time_Calc_Routines.h"
#include "runedit/times/stoptimes.h"

namespace groupops {

namespace {

using base::Date;

bool returnsBetween(const RouteRun& earlier, const RouteRun& later, double backToGarageGap) {
    return earlier.end && later.start &&
           runedit::DiffMinutes(*earlier.end, *later.start) >= backToGarageGap;
}

std::optional<Date> timeAt(std::optional<Date> time, Travel travel, int direction) {
    if (!time || !travel.isKnown()) {
        return std::nullopt;
    }
    return runedit::shifted(*time, direction * runedit::secondsOf(travel.minutes));
}

}  // namespace

PerRun<RunLegs> legsOfRoute(const PerRun<RouteRun>& runs, int count, std::int32_t garage,
                            double backToGarageGap) {
    PerRun<RunLegs> legs;
    for (int i = 1; i <= count; ++i) {
        const RouteRun& run = runs[i];
        const bool first = i == 1;
        const bool last = i == count;
        RunLegs& own = legs[i];
        own.showBothEnd = !first && returnsBetween(runs[i - 1], run, backToGarageGap);
        own.showBothBeg = last || returnsBetween(run, runs[i + 1], backToGarageGap);
        own.before = {first || own.showBothEnd ? garage : runs[i - 1].lastStop, run.firstStop};
        own.after = {run.lastStop, own.showBothBeg ? garage : runs[i + 1].firstStop};
    }
    return legs;
}

RunDeadHead deadHeadOf(const RouteRun& run, const RunLegs& legs, Travel before, Travel after) {
    return {.before = before,
            .after = after,
            .beforeStart = timeAt(run.start, before, -1),
            .afterStart = timeAt(run.end, after, 1),
            .showBothBeg = legs.showBothBeg,
            .showBothEnd = legs.showBothEnd};
}

}  // namespace groupops
