#include "runsearch/schedule/buses.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <unordered_map>

#include "platform/base/text.h"

namespace schedule {

namespace {

struct Use {
    int bus = 0;
    Interval time;
};

/// Each bus counts once at a time, whatever is drawn of it.
StepCurve curveOf(std::vector<Use> uses) {
    std::ranges::sort(uses, {}, [](const Use& use) { return std::tuple(use.bus, use.time.start); });
    std::vector<Interval> all;
    all.reserve(uses.size());
    for (std::size_t i = 0; i < uses.size(); ++i) {
        const auto& use = uses[i];
        if (use.time.length() <= 0) {
            continue;
        }
        const bool goesOn =
            !all.empty() && i > 0 && uses[i - 1].bus == use.bus && use.time.start <= all.back().end;
        if (goesOn) {
            all.back().end = std::max(all.back().end, use.time.end);
        } else {
            all.push_back(use.time);
        }
    }
    return StepCurve(all);
}

}  // namespace

StepCurve::StepCurve(std::span<const Interval> intervals) {
    std::vector<Step> changes;
    changes.reserve(2 * intervals.size());
    for (const auto& interval : intervals) {
        if (interval.length() > 0) {
            changes.push_back({interval.start, 1});
            changes.push_back({interval.end, -1});
        }
    }
    std::ranges::sort(changes, {}, &Step::at);
    int count = 0;
    for (std::size_t i = 0; i < changes.size();) {
        const auto at = changes[i].at;
        const int former = count;
        for (; i < changes.size() && changes[i].at == at; ++i) {
            count += changes[i].count;
        }
        if (count != former) {
            steps_.push_back({at, count});
        }
        if (count > peak_.count) {
            peak_ = {at, count};
        }
    }
}

int StepCurve::at(Seconds time) const {
    const auto after = std::ranges::upper_bound(steps_, time, {}, &Step::at);
    return after == steps_.begin() ? 0 : std::prev(after)->count;
}

std::vector<int> busOfRun(const Plan& plan) {
    std::unordered_map<std::string, int> vehicles;
    std::vector<int> busOfRoute;
    int buses = 0;
    for (const auto& route : plan.routes) {
        const auto vehicle = base::lowered(route.vehicle);
        const int next = buses++;
        busOfRoute.push_back(vehicle.empty() ? next
                                             : vehicles.try_emplace(vehicle, next).first->second);
    }
    std::vector<int> result;
    result.reserve(plan.runs.size());
    for (const auto& run : plan.runs) {
        result.push_back(run.route == None ? buses++
                                           : busOfRoute[static_cast<std::size_t>(run.route)]);
    }
    return result;
}

std::vector<CountedTrips> countedTrips(const Plan& plan, std::span<const int> runs) {
    std::vector<CountedTrips> counted(plan.runs.size());
    std::vector<int> lastOf(plan.routes.size(), None);
    std::vector<int> order(runs.begin(), runs.end());
    std::ranges::sort(order, {}, [&](int run) {
        return std::tuple(plan.run(run).start.value_or(-1), plan.run(run).end.value_or(-1));
    });
    for (const int run : order) {
        const int route = plan.run(run).route;
        if (route == None) {
            continue;
        }
        int& last = lastOf[static_cast<std::size_t>(route)];
        if (last != None) {
            const bool viaGarage = plan.run(last).toGarage || plan.run(run).fromGarage;
            counted[static_cast<std::size_t>(last)].after = viaGarage;
        }
        last = run;
    }
    return counted;
}

BusCurves busCurves(const Plan& plan, std::span<const int> runs) {
    const auto busOf = busOfRun(plan);
    const auto counted = countedTrips(plan, runs);
    std::vector<Use> out;
    for (const int number : runs) {
        const auto& run = plan.run(number);
        if (!run.start) {
            continue;
        }
        const auto& trips = counted[static_cast<std::size_t>(number)];
        const auto before = run.before.time.value_or(0);
        const auto after = trips.after ? run.after.time.value_or(0) : 0;
        if (before + after + *run.end - *run.start > 0) {
            out.push_back(
                {busOf[static_cast<std::size_t>(number)], {*run.start - before, *run.end + after}});
        }
    }
    return {ridersCurve(plan, runs, busOf), curveOf(std::move(out))};
}

StepCurve ridersCurve(const Plan& plan, std::span<const int> runs, std::span<const int> busOf) {
    std::vector<Use> uses;
    for (const int number : runs) {
        const auto& run = plan.run(number);
        if (run.start && *run.end > *run.start) {
            uses.push_back({busOf[static_cast<std::size_t>(number)], {*run.start, *run.end}});
        }
    }
    return curveOf(std::move(uses));
}

}  // namespace schedule
