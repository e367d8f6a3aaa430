#include "runedit/times/stoptimes.h"

#include <algorithm>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/base/value.h"

namespace runedit {

namespace {

const base::Date Earliest = base::Date::of(100, 1, 1);
const base::Date Latest = base::Date::of(9999, 12, 31, 23, 59, 59);

struct Minutes {
    float load;
    float drive;
};

float required(std::optional<float> minutes) {
    if (!minutes) {
        base::raise(base::errors::InvalidUseOfNull);
    }
    return *minutes;
}

Minutes minutesOf(const TimedStop& stop) {
    return {required(stop.loadMinutes), required(stop.driveMinutes)};
}

/// The seconds between two neighbours of the run, whichever is computed from the other.
std::int64_t gapSeconds(Minutes earlier, Minutes later) {
    return secondsOf(later.drive + earlier.load);
}

bool sameId(const TimedStop& a, const TimedStop& b) { return a.stopId && a.stopId == b.stopId; }

bool sameTrimmedId(const TimedStop& a, const TimedStop& b) {
    return a.stopId && b.stopId && base::trim(*a.stopId) == base::trim(*b.stopId);
}

/// The stops behind the one at `anchorStop`, which stands at `time` and is in `writes` already.
StopTimes passOn(std::span<const TimedStop> stops, std::size_t anchorStop, TimeOrder order,
                 base::Date time, std::vector<StopWrite> writes) {
    Minutes before = minutesOf(stops[anchorStop]);
    for (std::size_t i = anchorStop + 1; i < stops.size(); ++i) {
        const TimedStop& stop = stops[i];
        const bool clears = sameId(stop, stops[i - 1]);
        const Minutes minutes = clears ? Minutes{0, 0} : minutesOf(stop);
        if (!sameTrimmedId(stop, stops[i - 1])) {
            time = shifted(time, order == TimeOrder::Forwards ? gapSeconds(before, minutes)
                                                              : -gapSeconds(minutes, before));
        }
        if (clears || stop.updatesTime) {
            writes.push_back({i, stop.updatesTime ? std::optional(time) : std::nullopt, clears});
        }
        before = minutes;
    }
    return {time, std::move(writes)};
}

}  // namespace

std::int64_t secondsOf(float minutes) {
    return base::roundHalfEven(static_cast<double>(minutes * 60));
}

base::Date shifted(base::Date time, std::int64_t seconds) {
    const std::int64_t widest = Latest.seconds - Earliest.seconds;
    if (time < Earliest || time > Latest || seconds > widest || seconds < -widest) {
        base::raise(base::errors::Overflow);
    }
    const base::Date result = time.plusSeconds(seconds);
    if (result < Earliest || result > Latest) {
        base::raise(base::errors::Overflow);
    }
    return result;
}

StopTimes timesFrom(std::span<const TimedStop> stops, TimeOrder order, base::Date anchor) {
    if (stops.empty()) {
        return {anchor, {}};
    }
    std::vector<StopWrite> writes;
    if (stops.front().updatesTime) {
        writes.push_back({.stop = 0, .time = anchor});
    }
    return passOn(stops, 0, order, anchor, std::move(writes));
}

std::optional<StopTimes> timesFromMiddle(std::span<const TimedStop> stops, base::Date anchor) {
    const auto found = std::ranges::find(stops, anchor, &TimedStop::time);
    if (found == stops.end()) {
        return std::nullopt;
    }
    const auto place = static_cast<std::size_t>(found - stops.begin());
    return passOn(stops, place, TimeOrder::Forwards, anchor, {{.stop = place, .time = anchor}});
}

}  // namespace runedit
