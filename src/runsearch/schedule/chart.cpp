#include "runsearch/schedule/chart.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <queue>
#include <tuple>
#include <unordered_map>

#include "platform/base/text.h"

namespace schedule {

namespace {

/// Two runs of a school stand in one lane only where so much lies between them.
constexpr Seconds LaneGap = 30 * Minute;

class Placing {
public:
    Placing(const Plan& plan, const Layout& layout) : plan_(plan) { chart_.layout = layout; }

    Chart placed();

private:
    using Runs = std::vector<int>;

    void takeRuns();
    void sortByStart(Runs& runs) const;
    void addRow(RowKind kind, int subject, std::span<const int> runs);
    void addUntimed(Runs runs);
    void addRoutes();
    void addSchools();
    void addLanes(RowKind kind, int subject, Runs runs, Seconds gap);
    void addChanges();
    void addOverlaps();
    void addProblems();
    void measure();

    const Plan& plan_;
    Chart chart_;
    Runs timed_;
    Runs untimed_;
};

Chart Placing::placed() {
    takeRuns();
    addUntimed(std::move(untimed_));
    if (chart_.layout.order == Order::ByRoute) {
        addRoutes();
        addChanges();
    } else {
        addSchools();
    }
    addOverlaps();
    addProblems();
    chart_.buses = busCurves(plan_, chart_.runs);
    measure();
    return std::move(chart_);
}

void Placing::takeRuns() {
    const auto days = chart_.layout.days;
    for (int i = 0; i < static_cast<int>(plan_.runs.size()); ++i) {
        const auto& run = plan_.run(i);
        if (days == AllDays || (run.days & days) != 0) {
            chart_.runs.push_back(i);
            (run.start ? timed_ : untimed_).push_back(i);
        }
    }
    chart_.barOf.assign(plan_.runs.size(), None);
    chart_.bars.reserve(chart_.runs.size());
}

void Placing::sortByStart(Runs& runs) const {
    std::ranges::sort(runs, [this](int a, int b) {
        const auto &x = plan_.run(a), &y = plan_.run(b);
        return std::tie(x.start, x.end, x.id) < std::tie(y.start, y.end, y.id);
    });
}

void Placing::addRow(RowKind kind, int subject, std::span<const int> runs) {
    const int row = static_cast<int>(chart_.rows.size());
    chart_.rows.push_back({kind, subject, chart_.bars.size(), runs.size()});
    for (const int number : runs) {
        const auto& run = plan_.run(number);
        const auto start = run.start.value_or(0);
        chart_.barOf[static_cast<std::size_t>(number)] = static_cast<int>(chart_.bars.size());
        chart_.bars.push_back({number, static_cast<std::int16_t>(zoneAt(plan_.zones, start)), row,
                               start, run.end.value_or(0)});
    }
}

void Placing::addUntimed(Runs runs) {
    std::ranges::sort(runs, naturalLess,
                      [this](int run) { return std::string_view(plan_.run(run).id); });
    for (std::size_t i = 0; i < runs.size(); i += UntimedInRow) {
        addRow(RowKind::NoTimes, None,
               std::span(runs).subspan(i, std::min(UntimedInRow, runs.size() - i)));
    }
}

void Placing::addRoutes() {
    std::vector<Runs> ofRoute(plan_.routes.size());
    Runs without;
    for (const int run : timed_) {
        const int route = plan_.run(run).route;
        (route == None ? without : ofRoute[static_cast<std::size_t>(route)]).push_back(run);
    }
    for (std::size_t route = 0; route < ofRoute.size(); ++route) {
        if (!ofRoute[route].empty()) {
            sortByStart(ofRoute[route]);
            addRow(RowKind::Route, static_cast<int>(route), ofRoute[route]);
        }
    }
    addLanes(RowKind::NoRoute, None, std::move(without), 0);
}

void Placing::addSchools() {
    std::vector<Runs> ofSchool(plan_.schools.size());
    for (const int run : timed_) {
        ofSchool[static_cast<std::size_t>(plan_.run(run).school)].push_back(run);
    }
    std::vector<int> order;
    for (std::size_t i = 0; i < ofSchool.size(); ++i) {
        if (!ofSchool[i].empty()) {
            order.push_back(static_cast<int>(i));
        }
    }
    // "No school" comes last.
    std::ranges::sort(order, {}, [this](int place) {
        const auto& school = plan_.school(place);
        return std::tuple(school.code.empty(), base::lowered(school.name), school.code);
    });
    for (const int school : order) {
        auto& runs = ofSchool[static_cast<std::size_t>(school)];
        if (chart_.layout.closedSchools.contains(school)) {
            sortByStart(runs);
            addRow(RowKind::ClosedSchool, school, runs);
        } else {
            addRow(RowKind::School, school, {});
            addLanes(RowKind::Lane, school, std::move(runs), LaneGap);
        }
    }
}

/// Each run goes to the lane that has been free longest, a new one where none is.
void Placing::addLanes(RowKind kind, int subject, Runs runs, Seconds gap) {
    sortByStart(runs);
    using Lane = std::pair<Seconds, std::size_t>;  // where its last run ends
    std::priority_queue<Lane, std::vector<Lane>, std::greater<>> free;
    std::vector<Runs> lanes;
    for (const int number : runs) {
        const auto& run = plan_.run(number);
        std::size_t lane = lanes.size();
        if (!free.empty() && free.top().first + gap <= *run.start) {
            lane = free.top().second;
            free.pop();
        } else {
            lanes.emplace_back();
        }
        lanes[lane].push_back(number);
        free.emplace(*run.end, lane);
    }
    for (const auto& lane : lanes) {
        addRow(kind, subject, lane);
    }
}

void Placing::addChanges() {
    for (const auto& row : chart_.rows) {
        if (row.kind != RowKind::Route) {
            continue;
        }
        int former = None;
        for (std::size_t i = row.first; i < row.first + row.count; ++i) {
            auto& bar = chart_.bars[i];
            if (former != None) {
                bar.change =
                    changeBetween(plan_.run(former), plan_.run(bar.run), chart_.layout.tightUnder);
                bar.change.former = former;
            }
            // The bus is free again only where the longest of them ends.
            if (former == None || *plan_.run(bar.run).end >= *plan_.run(former).end) {
                former = bar.run;
            }
        }
    }
}

void Placing::addOverlaps() {
    chart_.overlaps = findOverlaps(plan_, timed_);
    chart_.overlapped.assign(plan_.runs.size(), {});
    for (const int number : timed_) {
        const auto& overlap = chart_.overlaps[static_cast<std::size_t>(number)];
        if (overlap.other == None) {
            continue;
        }
        auto& other = chart_.overlapped[static_cast<std::size_t>(overlap.other)];
        if (overlap.seconds > other.seconds) {
            other = {number, overlap.seconds, overlap.of};
        }
    }
}

void Placing::addProblems() {
    for (std::size_t i = 0; i < chart_.bars.size(); ++i) {
        const auto& bar = chart_.bars[i];
        auto& worst = chart_.rows[static_cast<std::size_t>(bar.row)].worst;
        worst = std::max(worst, chart_.troubleOf(bar));
        const bool overlaps = chart_.overlaps[static_cast<std::size_t>(bar.run)].other != None;
        const auto trouble = overlaps ? Trouble::Overlap : bar.change.trouble;
        if (trouble != Trouble::Nothing) {
            chart_.problems.push_back({i, trouble});
            ++chart_.troubles[static_cast<std::size_t>(trouble)];
        }
    }
}

void Placing::measure() {
    chart_.from = Day;
    for (const auto& bar : chart_.bars) {
        const auto& run = plan_.run(bar.run);
        if (run.start) {
            const bool legs = chart_.layout.order == Order::ByRoute && run.route != None;
            chart_.from =
                std::min(chart_.from, bar.start - (legs ? run.before.time.value_or(0) : 0));
            chart_.until = std::max({chart_.until, run.bell.value_or(0),
                                     bar.end + (legs ? run.after.time.value_or(0) : 0)});
        }
    }
    if (chart_.from >= chart_.until) {
        const bool isEmpty = chart_.from > chart_.until;
        chart_.from = isEmpty ? 6 * Hour : chart_.from - Hour;
        chart_.until = isEmpty ? 18 * Hour : chart_.until + Hour;
    }
}

/// The run of those before that ends last: the longest overlap is with it.
void overlapsWithin(const Plan& plan, std::span<const int> sorted, Overlap::Of of,
                    std::vector<Overlap>& found) {
    int last = None;
    for (const int number : sorted) {
        const auto& run = plan.run(number);
        const auto until = last == None ? 0 : *plan.run(last).end;
        auto& overlap = found[static_cast<std::size_t>(number)];
        const auto seconds = std::min(until, *run.end) - *run.start;
        if (last != None && seconds > 0 && overlap.other == None) {
            overlap = {last, seconds, of};
        }
        if (last == None || *run.end > until) {
            last = number;
        }
    }
}

}  // namespace

Trouble Chart::troubleOf(const Bar& bar) const {
    const auto run = static_cast<std::size_t>(bar.run);
    return overlaps[run].other != None || overlapped[run].other != None ? Trouble::Overlap
                                                                        : bar.change.trouble;
}

Chart layOut(const Plan& plan, const Layout& layout) { return Placing(plan, layout).placed(); }

std::vector<Overlap> findOverlaps(const Plan& plan, std::span<const int> runs) {
    std::vector<Overlap> found(plan.runs.size());
    std::vector<int> sorted;
    std::ranges::copy_if(runs, std::back_inserter(sorted), [&](int run) {
        const auto& of = plan.run(run);
        return of.route != None && of.start;
    });
    std::ranges::stable_sort(sorted, {}, [&](int run) { return plan.run(run).start; });
    const auto within = [&](Overlap::Of of, auto keyOf) {
        std::unordered_map<std::string, std::vector<int>> groups;
        for (const int run : sorted) {
            const auto route = static_cast<std::size_t>(plan.run(run).route);
            if (auto key = keyOf(plan.routes[route]); !key.empty()) {
                groups[std::move(key)].push_back(run);
            }
        }
        for (const auto& [key, group] : groups) {
            overlapsWithin(plan, group, of, found);
        }
    };
    within(Overlap::Of::Route, [](const Route& route) { return std::to_string(route.key); });
    within(Overlap::Of::Vehicle, [](const Route& route) { return base::lowered(route.vehicle); });
    within(Overlap::Of::Driver, [](const Route& route) { return route.driverKey; });
    return found;
}

Change changeBetween(const ScheduledRun& former, const ScheduledRun& run, Seconds tightUnder) {
    Change change{.leaves = *former.end, .arrives = *former.end, .sets = *run.start};
    change.viaGarage = former.toGarage || run.fromGarage;
    if (change.viaGarage) {
        change.isKnown = former.after.time && run.before.time;
        change.arrives += former.after.time.value_or(0);
        change.sets -= run.before.time.value_or(0);
    } else {
        // Stored with both runs; where they differ the trip is one to another run.
        const auto before = run.before.time.value_or(None);
        const auto after = former.after.time.value_or(None);
        change.isKnown = before >= 0 && after >= 0 && std::abs(before - after) < Minute;
        change.arrives += change.isKnown ? before : 0;
    }
    change.slack = change.sets - change.arrives;
    if (change.isKnown) {
        change.trouble = change.slack < 0            ? Trouble::Short
                         : change.slack < tightUnder ? Trouble::Tight
                                                     : Trouble::Nothing;
    }
    return change;
}

}  // namespace schedule
