#include "runedit/times/mdl_Time_Calc_Routines.h"

#include <algorithm>
#include <limits>

#include "platform/base/error.h"
#include "platform/base/value.h"
#include "runedit/times/storedstoptimes.h"
#include "startup/base/mdlFileUtilities.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace runedit {

namespace {

constexpr auto Module = "mdl_Time_Calc_Routines";

using base::Date;

/// Seconds of a day, from which it lasts so many; may go on past midnight.
struct Span {
    std::int64_t start;
    std::int64_t length;
};

Span spanOf(Date start, Date end) {
    const std::int64_t from = start.timeValue().seconds;
    const std::int64_t length = end.timeValue().seconds - from;
    return {from, length < 0 ? length + Date::SecondsPerDay : length};
}

bool overlap(Span a, Span b) {
    return std::max(a.start, b.start) < std::min(a.start + a.length, b.start + b.length);
}

}  // namespace

Date Calc_Times(std::string& mode, Date& anchorTime, bool useWorkTable, const std::string& run) {
    return startup::trapped("Calc_Times", Module, [&] {
        const auto stops = useWorkTable
                               ? StoredStops{*startup::gcnRouteWrk, StopTable::Working, {}}
                               : StoredStops{*startup::gcnRouting, StopTable::Routing, run};
        return timeStoredStops(stops, mode, anchorTime, startup::logLine);
    });
}

std::int32_t DiffMinutes(Date from, Date to) {
    return startup::trapped("DiffMinutes", Module, [&] {
        const auto minutes =
            base::roundHalfEven(static_cast<double>(to.seconds - from.seconds) / 60);
        using Long = std::numeric_limits<std::int32_t>;
        if (minutes < Long::min() || minutes > Long::max()) {
            base::raise(base::errors::Overflow);
        }
        return static_cast<std::int32_t>(minutes);
    });
}

bool Time_Overlap(Date start1, Date end1, Date start2, Date end2) {
    const Span first = spanOf(start1, end1);
    const Span second = spanOf(start2, end2);
    const auto moved = [](Span span) {
        return Span{span.start + Date::SecondsPerDay, span.length};
    };
    return overlap(first, second) || overlap(moved(first), second) || overlap(first, moved(second));
}

}  // namespace runedit
