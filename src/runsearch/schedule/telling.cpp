#include "runsearch/schedule/telling.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "runsearch/schedule/timescale.h"

namespace schedule {

namespace {

std::string counted(int number, const char* thing) {
    return fmt::format("{} {}{}", number, thing, number == 1 ? "" : "s");
}

std::string timesText(const ScheduledRun& run) {
    return run.start ? fmt::format("{}  ({} min)", spanText(*run.start, *run.end),
                                   minutesOf(*run.end - *run.start))
                     : "no times";
}

std::string bellText(const ScheduledRun& run) {
    auto bell = clockText(*run.bell, HalfOfDay::Told);
    if (!run.start) {
        return bell;
    }
    const auto gap = run.isPickUp ? *run.bell - *run.end : *run.start - *run.bell;
    return fmt::format("{}, {} min {} the {}", bell, minutesOf(gap),
                       (gap >= 0) == run.isPickUp ? "after" : "before",
                       run.isPickUp ? "end" : "start");
}

std::string ridersText(const ScheduledRun& run) {
    auto text =
        fmt::format("{} at {}, {:.1f} mi", run.students, counted(run.stops, "stop"), run.miles);
    return run.seats > 0 && run.students > run.seats ? text + fmt::format(", {} seats", run.seats)
                                                     : text;
}

std::string busText(const Plan& plan, const ScheduledRun& run) {
    const auto* route = plan.routeOf(run);
    const auto& type = plan.vehicleTypes[static_cast<std::size_t>(run.vehicleType)];
    const std::string bus = route != nullptr ? route->vehicle : "";
    if (bus.empty()) {
        return type.code.empty() ? "none" : "none yet, " + type.name;
    }
    return type.code.empty() ? bus : bus + ", " + type.name;
}

std::string tripText(const EmptyTrip& trip, const char* where) {
    return trip.time ? fmt::format("{} min {}", minutesOf(*trip.time), where)
                     : fmt::format("not known {}", where);
}

std::string overlapText(const Plan& plan, const Overlap& overlap, int of) {
    const auto& other = plan.run(overlap.other);
    const auto minutes = minutesOf(overlap.seconds);
    const auto& route = plan.route(plan.run(of).route);
    switch (overlap.of) {
        case Overlap::Of::Route:
            return fmt::format("overlaps {} by {} min", other.id, minutes);
        case Overlap::Of::Vehicle:
            return fmt::format("bus {} also on {} for {} min", route.vehicle, other.id, minutes);
        case Overlap::Of::Driver:
            break;
    }
    return fmt::format("{} also drives {} for {} min", route.driver, other.id, minutes);
}

/// The empty trip that a bus would need between two runs that overlap.
std::string withEmptyTrip(std::string text, const Overlap& overlap, const Bar& bar) {
    const bool knows = overlap.of == Overlap::Of::Route && bar.change.former == overlap.other &&
                       bar.change.isKnown && !bar.change.viaGarage;
    return knows ? fmt::format("{}, and {} min empty between", text,
                               minutesOf(bar.change.arrives - bar.change.leaves))
                 : text;
}

std::string changeText(const Plan& plan, const Change& change) {
    const auto& former = plan.run(change.former).id;
    if (!change.isKnown) {
        return fmt::format("empty trip after {} not known", former);
    }
    if (change.trouble == Trouble::Short) {
        return fmt::format("short by {} min after {}", minutesOf(change.slack), former);
    }
    return fmt::format("{} min slack after {}{}", minutesLeft(change.slack), former,
                       change.viaGarage ? ", by the garage" : "");
}

void addTroubles(const Plan& plan, const Chart& chart, const Bar& bar, Card& card) {
    const auto run = static_cast<std::size_t>(bar.run);
    const auto& earlier = chart.overlaps[run];
    const auto& later = chart.overlapped[run];
    if (earlier.other != None) {
        card.lines.push_back({"Overlap",
                              withEmptyTrip(overlapText(plan, earlier, bar.run), earlier, bar),
                              Trouble::Overlap, true});
    }
    if (later.other != None) {
        card.lines.push_back(
            {"Overlap", overlapText(plan, later, bar.run), Trouble::Overlap, true});
    }
    if (bar.change.former != None && earlier.other != bar.change.former) {
        const auto trouble = bar.change.trouble;
        card.lines.push_back(
            {"Change", changeText(plan, bar.change), trouble, trouble != Trouble::Nothing});
    }
}

bool holds(std::string_view text, const std::string& folded) {
    return base::lowered(text).find(folded) != std::string::npos;
}

}  // namespace

Card cardOf(const Plan& plan, const Chart& chart, int number) {
    const auto& run = plan.run(number);
    const auto* route = plan.routeOf(run);
    const auto& school = plan.school(run.school);
    Card card{run.id, school.code, run.description, {}};
    card.lines.push_back({"Times", timesText(run), Trouble::Nothing, true});
    if (run.bell) {
        card.lines.push_back({"Bell", bellText(run)});
    }
    card.lines.push_back(
        {"Riders", ridersText(run),
         run.seats > 0 && run.students > run.seats ? Trouble::Tight : Trouble::Nothing});
    card.lines.push_back({"Route", route != nullptr ? route->id : "none"});
    card.lines.push_back({"Bus", busText(plan, run)});
    if (route != nullptr) {
        card.lines.push_back({"Driver", route->driver.empty() ? "none" : route->driver});
        card.lines.push_back(
            {"Empty", tripText(run.before, "before") + ", " + tripText(run.after, "after")});
    }
    if (const int bar = chart.barOf[static_cast<std::size_t>(number)]; bar != None) {
        addTroubles(plan, chart, chart.bars[static_cast<std::size_t>(bar)], card);
    }
    if (run.needsMap) {
        card.lines.push_back({"Map", "needs to be resolved on the map"});
    }
    if (run.hasWarnings) {
        card.lines.push_back({"Checks", "the run has warnings"});
    }
    return card;
}

std::string spokenText(const Card& card) {
    std::string problems;
    std::string rest;
    for (const auto& line : card.lines) {
        auto& part = line.trouble != Trouble::Nothing ? problems : rest;
        part += fmt::format(", {} {}", base::lowered(line.label), line.text);
    }
    return fmt::format("Run {}{}{}{}.", card.run, problems,
                       card.school.empty() ? "" : ", school " + card.school, rest);
}

std::string countText(const Plan& plan, const Chart& chart) {
    const auto runs = counted(static_cast<int>(chart.runs.size()), "run");
    std::vector<int> places;
    const bool byRoute = chart.layout.order == Order::ByRoute;
    for (const int number : chart.runs) {
        places.push_back(byRoute ? plan.run(number).route : plan.run(number).school);
    }
    std::ranges::sort(places);
    places.erase(std::unique(places.begin(), places.end()), places.end());
    std::erase_if(places, [&](int place) {
        return place == None || (!byRoute && plan.school(place).code.empty());
    });
    const int groups = static_cast<int>(places.size());
    return byRoute ? runs + " on " + counted(groups, "route")
                   : runs + " to " + counted(groups, "school");
}

std::string troublesText(const Troubles& troubles) {
    const auto of = [&](Trouble trouble) { return troubles[static_cast<std::size_t>(trouble)]; };
    std::vector<std::string> parts;
    if (const int overlaps = of(Trouble::Overlap); overlaps > 0) {
        parts.push_back(counted(overlaps, "overlap"));
    }
    for (const auto& [trouble, word] :
         {std::pair{Trouble::Short, "short"}, std::pair{Trouble::Tight, "tight"}}) {
        if (of(trouble) > 0) {
            parts.push_back(fmt::format("{} {}", of(trouble), word));
        }
    }
    return parts.empty() ? "no problems" : fmt::format("{}", fmt::join(parts, ", "));
}

std::string plateText(const Plan& plan, const Chart& chart, const Bar& bar) {
    const auto run = static_cast<std::size_t>(bar.run);
    const auto& earlier = chart.overlaps[run];
    const auto& told = earlier.other != None ? earlier : chart.overlapped[run];
    const bool isSecondary = told.other != None && told.of != Overlap::Of::Route;
    const auto minutes = minutesOf(told.seconds);
    if (isSecondary) {
        const auto& route = plan.route(plan.run(bar.run).route);
        return told.of == Overlap::Of::Vehicle
                   ? fmt::format("bus {} twice, {} min", route.vehicle, minutes)
                   : fmt::format("{} twice, {} min", route.driver, minutes);
    }
    if (earlier.other != None) {
        return fmt::format("overlaps {} min", minutes);
    }
    switch (bar.change.trouble) {
        case Trouble::Short:
            return fmt::format("{} min short", minutesOf(bar.change.slack));
        case Trouble::Tight:
            return std::to_string(minutesLeft(bar.change.slack));
        default:
            return {};
    }
}

RowHead headOf(const Plan& plan, const Chart& chart, const Row& row) {
    switch (row.kind) {
        case RowKind::Route: {
            const auto& route = plan.route(row.subject);
            const bool twice = std::ranges::any_of(chart.barsOf(row), [&](const Bar& bar) {
                return chart.overlaps[static_cast<std::size_t>(bar.run)].of ==
                           Overlap::Of::Vehicle ||
                       chart.overlapped[static_cast<std::size_t>(bar.run)].of ==
                           Overlap::Of::Vehicle;
            });
            return {route.id, route.driver, route.vehicle == route.id ? "" : route.vehicle, twice};
        }
        case RowKind::NoRoute:
            return {"no route"};
        case RowKind::NoTimes:
            return {"no times"};
        case RowKind::School:
        case RowKind::ClosedSchool: {
            const auto& school = plan.school(row.subject);
            return {school.code.empty() ? "No school" : school.name};
        }
        case RowKind::Lane:
            break;
    }
    const auto& run = plan.run(chart.bars[row.first].run);
    const auto* route = plan.routeOf(run);
    return route != nullptr ? RowHead{route->id, route->driver} : RowHead{};
}

std::string schoolText(const Plan& plan, const Chart& chart, int band) {
    int runs = 0;
    int riders = 0;
    auto row = static_cast<std::size_t>(band);
    do {
        for (const auto& bar : chart.barsOf(chart.rows[row])) {
            ++runs;
            riders += plan.run(bar.run).students;
        }
    } while (++row < chart.rows.size() && chart.rows[row].kind == RowKind::Lane);
    return fmt::format("{} · {}", counted(runs, "run"), counted(riders, "rider"));
}

bool isFound(const Plan& plan, const ScheduledRun& run, std::string_view typed) {
    const auto folded = base::lowered(base::trim(typed));
    const auto* route = plan.routeOf(run);
    const auto& school = plan.school(run.school);
    return holds(run.id, folded) || holds(run.description, folded) || holds(school.code, folded) ||
           holds(school.name, folded) ||
           (route != nullptr && (holds(route->id, folded) || holds(route->vehicle, folded) ||
                                 holds(route->driver, folded)));
}

}  // namespace schedule
