#include "runsearch/schedule/sketch.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include <fmt/format.h>

#include "runsearch/schedule/timescale.h"

namespace schedule {

namespace {

/// More than that are counted, not named.
constexpr std::size_t MostNamed = 4;

int routeOfKey(const Plan& plan, std::int64_t key) {
    const auto found = std::ranges::find(plan.routes, key, &Route::key);
    return key == 0 || found == plan.routes.end() ? None
                                                  : static_cast<int>(found - plan.routes.begin());
}

std::int64_t keyOfRoute(const Plan& plan, int route) {
    return route == None ? 0 : plan.route(route).key;
}

std::string nameOfRoute(const Plan& plan, int route) {
    return route == None ? "no route" : "route " + plan.route(route).id;
}

/// Where the run would be.
ScheduledRun movedTo(const Plan& plan, ScheduledRun run, int route, Seconds start) {
    run.end = start + *run.end - *run.start;
    run.start = start;
    plan.putOnRoute(run, route);
    return run;
}

/// The empty trips between two runs of a route, as the bus would drive them.
void joinRuns(const Plan& plan, ScheduledRun& former, ScheduledRun& run, std::int32_t garage,
              const TravelTime& travel) {
    const bool viaGarage = *run.start - *former.end >= plan.backToGarageGap * Minute;
    former.toGarage = run.fromGarage = viaGarage;
    former.after.time = travel(former.lastStop, viaGarage ? garage : run.firstStop);
    run.before.time = viaGarage ? travel(garage, run.firstStop) : former.after.time;
}

/// Works out the empty trips of a whole route.
void driveRoute(Plan& plan, int route, const TravelTime& travel) {
    std::vector<ScheduledRun*> runs;
    for (auto& run : plan.runs) {
        if (run.route == route && run.start) {
            runs.push_back(&run);
        }
    }
    std::ranges::sort(runs, {},
                      [](const ScheduledRun* run) { return std::tie(run->start, run->end); });
    const auto garage = plan.route(route).garage;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        if (i == 0) {
            runs[i]->before.time = travel(garage, runs[i]->firstStop);
        } else {
            joinRuns(plan, *runs[i - 1], *runs[i], garage, travel);
        }
    }
    if (!runs.empty()) {
        runs.back()->after.time = travel(runs.back()->lastStop, garage);
    }
}

/// The change between two runs of a route that need not be neighbours as stored.
Change changeOf(const Plan& plan, ScheduledRun former, ScheduledRun run, int route,
                Seconds tightUnder, const TravelTime& travel) {
    const auto shared = std::min(*former.end, *run.end) - *run.start;
    if (shared > 0) {
        return {.trouble = Trouble::Overlap, .slack = -shared};
    }
    joinRuns(plan, former, run, plan.route(route).garage, travel);
    return changeBetween(former, run, tightUnder);
}

struct Neighbours {
    int former = None;
    int next = None;
};

/// Beside a run on a route at a time; the former is the one that ends last.
Neighbours neighboursOf(const Plan& plan, const Chart& chart, const Drag& drag) {
    Neighbours found;
    for (const int other : chart.runs) {
        const auto& beside = plan.run(other);
        if (beside.route != drag.route || other == drag.run || !beside.start) {
            continue;
        }
        const bool isBefore = *beside.start <= drag.start;
        int& place = isBefore ? found.former : found.next;
        const bool isNearer = place == None || (isBefore ? *beside.end >= *plan.run(place).end
                                                         : *beside.start < *plan.run(place).start);
        place = isNearer ? other : place;
    }
    return found;
}

CardLine changeLine(const Plan& plan, const char* label, int other, const Change& change) {
    const auto name = fmt::format("{} {}", label, plan.run(other).id);
    if (change.trouble == Trouble::Overlap) {
        return {name, fmt::format("overlaps {} min", minutesOf(change.slack)), change.trouble,
                true};
    }
    if (!change.isKnown) {
        return {name, "empty trip not known", Trouble::Tight, true};
    }
    const auto empty = minutesOf(change.arrives - change.leaves);
    auto text = change.trouble == Trouble::Short
                    ? fmt::format("{} min empty, short by {} min", empty, minutesOf(change.slack))
                    : fmt::format("{} min empty, {} min slack", empty, minutesLeft(change.slack));
    return {name, text, change.trouble, true, change.trouble == Trouble::Nothing};
}

CardLine bellLine(const ScheduledRun& run) {
    const auto spare = run.isPickUp ? *run.bell - *run.end : *run.start - *run.bell;
    return {"Bell",
            fmt::format("{}, {} min {}", clockText(*run.bell, HalfOfDay::Told), minutesOf(spare),
                        spare < 0 ? "too late" : "to spare"),
            spare < 0 && run.isPickUp ? Trouble::Short : Trouble::Nothing};
}

/// The bus that it would have there, and whether it has seats for all.
CardLine busLine(const Plan& plan, const ScheduledRun& moved, int riders) {
    const auto* route = plan.routeOf(moved);
    const auto& type = plan.vehicleTypes[static_cast<std::size_t>(moved.vehicleType)].code;
    auto bus = route == nullptr || route->vehicle.empty() ? "none" : route->vehicle;
    bus += type.empty() ? "" : ", " + type;
    if (moved.seats == 0) {
        return {"Bus", bus + ": its seats are not known"};
    }
    const bool isFull = riders > moved.seats;
    return {"Bus", fmt::format("{}: {} riders on {} seats", bus, riders, moved.seats),
            isFull ? Trouble::Tight : Trouble::Nothing, isFull, !isFull};
}

std::string timesLine(const ScheduledRun& before, const ScheduledRun& after) {
    const auto moved = *after.start - *before.start;
    const auto times = spanText(*after.start, *after.end);
    if (moved == 0) {
        return times + ", not changed";
    }
    return minutesOf(moved) == 0 ? times + ", by seconds"
                                 : fmt::format("{}, {} min {}", times, minutesOf(moved),
                                               moved > 0 ? "later" : "earlier");
}

}  // namespace

base::Date movedTime(base::Date time, Seconds by) {
    const auto moved = time.plusSeconds(by);
    return moved.seconds < 0 ? moved.plusSeconds(Day) : moved;
}

void Sketch::undo() {
    if (!steps_.empty()) {
        steps_.pop_back();
    }
}

std::vector<Move> Sketch::moves(const Plan& stored) const {
    std::map<std::string, Move> last;
    for (const auto& step : steps_) {
        last[step.run] = step;
    }
    std::vector<Move> moves;
    for (const auto& run : stored.runs) {
        const auto move = last.find(run.id);
        if (move != last.end() && run.start &&
            (move->second.start != *run.start ||
             move->second.route != keyOfRoute(stored, run.route))) {
            moves.push_back(move->second);
        }
    }
    return moves;
}

Plan Sketch::applied(const Plan& stored, const TravelTime& travel) const {
    Plan plan = stored;
    std::set<int> routes;
    for (const auto& move : moves(stored)) {
        auto& run = *std::ranges::find(plan.runs, move.run, &ScheduledRun::id);
        const int route = routeOfKey(plan, move.route);
        routes.insert({run.route, route});
        run = movedTo(plan, std::move(run), route, move.start);
    }
    routes.erase(None);
    for (const int route : routes) {
        driveRoute(plan, route, travel);
    }
    return plan;
}

std::optional<Change> Fit::worse() const {
    const auto rank = [](const Change& of) {
        return std::tuple(of.trouble, !of.isKnown, -of.slack);
    };
    return !before || (after && rank(*after) > rank(*before)) ? after : before;
}

Fit fitOn(const Plan& plan, const Chart& chart, const Drag& drag, const TravelTime& travel) {
    if (drag.route == None) {
        return {};
    }
    const auto moved = movedTo(plan, plan.run(drag.run), drag.route, drag.start);
    const auto beside = neighboursOf(plan, chart, drag);
    const auto tight = chart.layout.tightUnder;
    Fit fit;
    fit.former = beside.former;
    fit.next = beside.next;
    if (beside.former != None) {
        fit.before = changeOf(plan, plan.run(beside.former), moved, drag.route, tight, travel);
    }
    if (beside.next != None) {
        fit.after = changeOf(plan, moved, plan.run(beside.next), drag.route, tight, travel);
    }
    return fit;
}

Card moveCard(const Plan& plan, const Chart& chart, const Drag& drag, const TravelTime& travel,
              const MoveChecks& checks) {
    const auto& run = plan.run(drag.run);
    const auto moved = movedTo(plan, run, drag.route, drag.start);
    Card card;
    card.run = drag.route == run.route
                   ? fmt::format("Sketch: {}", run.id)
                   : fmt::format("Sketch: {} to {}", run.id, nameOfRoute(plan, drag.route));
    card.description = "Drop to keep it in the sketch; Esc puts it back";
    card.lines.push_back({"Times", timesLine(run, moved), Trouble::Nothing, true});
    if (run.bell) {
        card.lines.push_back(bellLine(moved));
    }
    const auto fit = fitOn(plan, chart, drag, travel);
    if (fit.before) {
        card.lines.push_back(changeLine(plan, "From", fit.former, *fit.before));
    }
    if (fit.after) {
        card.lines.push_back(changeLine(plan, "To", fit.next, *fit.after));
    }
    card.lines.push_back(busLine(plan, moved, checks.riders.value_or(run.students)));
    if (const auto* route = plan.routeOf(moved)) {
        card.lines.push_back({"Driver", route->driver.empty() ? "none" : route->driver});
    }
    card.lines.insert(card.lines.end(), checks.lines.begin(), checks.lines.end());
    return card;
}

std::string sketchText(const Plan& stored, const std::vector<Move>& moves) {
    if (moves.empty()) {
        return "no change kept.";
    }
    std::vector<std::string> parts;
    for (const auto& move : moves) {
        const auto& run = *std::ranges::find(stored.runs, move.run, &ScheduledRun::id);
        auto text = move.run;
        if (move.route != keyOfRoute(stored, run.route)) {
            text += " to " + nameOfRoute(stored, routeOfKey(stored, move.route));
        }
        if (move.start != *run.start) {
            text += " at " + clockText(move.start, HalfOfDay::Told);
        }
        parts.push_back(std::move(text));
    }
    const auto rest = parts.size() > MostNamed ? parts.size() - MostNamed : 0;
    parts.resize(parts.size() - rest);
    return fmt::format("{} change{} kept: {}{}.  Nothing is saved before Apply.", moves.size(),
                       moves.size() == 1 ? "" : "s", fmt::join(parts, ", "),
                       rest == 0 ? "" : fmt::format(" and {} more", rest));
}

}  // namespace schedule
