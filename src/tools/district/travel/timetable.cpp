#include "tools/district/travel/timetable.h"

#include "data/schema/schema.h"
#include "platform/base/value.h"
#include "streets/solve/timing.h"

namespace tools::district {

namespace {

/// What the times of a run depend on.
streets::RunToSolve timedRun(const Run& run, Anchor anchor, base::Date time) {
    streets::RunToSolve timed{.anchor = anchor, .time = time};
    for (const Visit& visit : run.visits) {
        timed.stops.push_back({.passed = visit.stop->type == data::stoptype::Directional,
                               .loadMinutes = visit.loadMinutes});
    }
    return timed;
}

}  // namespace

void setLegs(Run& run, bool wholeSeconds) {
    const Stop* before = nullptr;
    int sequence = 0;
    for (Visit& visit : run.visits) {
        visit.sequence = ++sequence;
        if (visit.stop->type == data::stoptype::Directional) {
            continue;
        }
        if (!visit.stop->placed) {
            continue;
        }
        if (before != nullptr) {
            const double minutes = wholeSeconds ? driveMinutesAtSeconds(before->at, visit.stop->at)
                                                : driveMinutes(before->at, visit.stop->at);
            visit.driveMinutes = base::singleOf(minutes);
            visit.miles = milesBetween(before->at, visit.stop->at);
        }
        before = visit.stop;
    }
}

void setTimes(Run& run, Anchor anchor, base::Date time) {
    streets::Solution solution;
    for (const Visit& visit : run.visits) {
        solution.stops.push_back({.driveMinutes = visit.driveMinutes, .miles = visit.miles});
    }
    streets::setTimes(timedRun(run, anchor, time), solution);
    for (std::size_t i = 0; i < run.visits.size(); ++i) {
        Visit& visit = run.visits[i];
        const auto& found = solution.stops[i];
        if (found.time) {
            visit.time = found.time;
            visit.cumulatedMinutes = found.cumulatedMinutes;
            visit.cumulatedMiles = found.cumulatedMiles;
        }
    }
    run.start = solution.start;
    run.end = solution.end;
    if (solution.timedStops > 0) {
        run.totalMinutes = solution.totalMinutes;
        run.totalMiles = solution.totalMiles;
    }
}

}  // namespace tools::district
