#include "tools/district/travel/timetable.h"

#include <cmath>

#include "data/schema/schema.h"
#include "platform/base/value.h"

namespace tools::district {

namespace {

std::vector<Visit*> timedVisits(Run& run) {
    std::vector<Visit*> timed;
    for (Visit& visit : run.visits) {
        if (visit.stop->type != data::stoptype::Directional) {
            timed.push_back(&visit);
        }
    }
    return timed;
}

double rounded(double number) { return std::round(number * 100) / 100; }

void cumulate(Run& run, const std::vector<Visit*>& timed) {
    double miles = 0;
    for (Visit* visit : timed) {
        miles = rounded(miles + visit->miles);
        visit->cumulatedMiles = miles;
        visit->cumulatedMinutes =
            rounded(static_cast<double>(visit->time->seconds - timed.front()->time->seconds) / 60);
    }
    run.start = *timed.front()->time;
    run.end = *timed.back()->time;
    run.totalMiles = miles;
    run.totalMinutes = timed.back()->cumulatedMinutes;
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
    const auto timed = timedVisits(run);
    if (timed.empty()) {
        run.start = run.end = time;
        return;
    }
    const auto gap = [&](std::size_t i) {
        return gapSeconds(timed[i]->loadMinutes, timed[i + 1]->driveMinutes);
    };
    if (anchor == Anchor::Start) {
        timed.front()->time = time;
        for (std::size_t i = 1; i < timed.size(); ++i) {
            timed[i]->time = timed[i - 1]->time->plusSeconds(gap(i - 1));
        }
    } else {
        timed.back()->time = time;
        for (std::size_t i = timed.size() - 1; i > 0; --i) {
            timed[i - 1]->time = timed[i]->time->plusSeconds(-gap(i - 1));
        }
    }
    cumulate(run, timed);
}

}  // namespace tools::district
