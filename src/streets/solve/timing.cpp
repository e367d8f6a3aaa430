#include "streets/solve/timing.h"

#include <cmath>

#include "platform/base/value.h"

namespace streets {

namespace {

double rounded(double number) { return std::round(number * 100) / 100; }

void setTimesFrom(const RunToSolve& run, const std::vector<std::size_t>& timed,
                  std::vector<SolvedStop>& stops) {
    const auto gap = [&](std::size_t i) {
        return gapSeconds(run.stops[timed[i]].loadMinutes, stops[timed[i + 1]].driveMinutes);
    };
    if (run.anchor == Anchor::Start) {
        stops[timed.front()].time = run.time;
        for (std::size_t i = 1; i < timed.size(); ++i) {
            stops[timed[i]].time = stops[timed[i - 1]].time->plusSeconds(gap(i - 1));
        }
        return;
    }
    stops[timed.back()].time = run.time;
    for (std::size_t i = timed.size() - 1; i > 0; --i) {
        stops[timed[i - 1]].time = stops[timed[i]].time->plusSeconds(-gap(i - 1));
    }
}

}  // namespace

std::vector<std::size_t> timedStops(const RunToSolve& run) {
    std::vector<std::size_t> timed;
    for (std::size_t i = 0; i < run.stops.size(); ++i) {
        if (!run.stops[i].passed) {
            timed.push_back(i);
        }
    }
    return timed;
}

void setTimes(const RunToSolve& run, Solution& solution) {
    const auto timed = timedStops(run);
    solution.start = run.time;
    solution.end = run.time;
    if (timed.empty()) {
        return;
    }
    auto& stops = solution.stops;
    setTimesFrom(run, timed, stops);
    solution.start = *stops[timed.front()].time;
    solution.end = *stops[timed.back()].time;
    for (const std::size_t stop : timed) {
        solution.totalMiles = rounded(solution.totalMiles + stops[stop].miles);
        stops[stop].cumulatedMiles = solution.totalMiles;
        stops[stop].cumulatedMinutes =
            rounded(static_cast<double>(stops[stop].time->seconds - solution.start.seconds) / 60);
    }
    solution.totalMinutes = stops[timed.back()].cumulatedMinutes;
    solution.firstStop = run.stops[timed.front()].id;
    solution.lastStop = run.stops[timed.back()].id;
    solution.timedStops = static_cast<int>(timed.size());
}

std::int64_t gapSeconds(double loadMinutes, double driveMinutesToNext) {
    const float minutes = static_cast<float>(driveMinutesToNext) + static_cast<float>(loadMinutes);
    return base::roundHalfEven(static_cast<double>(minutes * 60));
}

}  // namespace streets
