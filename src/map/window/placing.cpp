#include "map/window/placing.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

namespace map {

namespace {

/// What the run comes to without the stop, where that is known; otherwise what is stored of it.
double minutesWithout(const streets::Network& network, const MappedRun& run, std::size_t stop) {
    if (run.stops[stop].isPlaced) {
        return run.minutes;
    }
    MappedRun rest = run;
    rest.stops.erase(rest.stops.begin() + static_cast<std::ptrdiff_t>(stop));
    const auto way = streets::solve(network, runToSolve(rest));
    return way.unserved.empty() ? way.totalMinutes : run.minutes;
}

std::optional<Candidate> candidate(const streets::Network& network, const MappedRun& run,
                                   std::size_t stop, geo::Feet at) {
    Candidate found{.at = at, .shown = {.run = withStopAt(run, stop, at)}};
    found.shown.way = wayOf(network, found.shown.run);
    if (!found.shown.way.isKnown()) {
        return std::nullopt;
    }
    const auto& halt = found.shown.way.solution.stops[stop].halt;
    found.name = halt ? network.cornerAt(*halt) : "";
    found.minutesMore = found.shown.way.solution.totalMinutes - minutesWithout(network, run, stop);
    return found;
}

}  // namespace

std::optional<Candidate> candidateAt(const streets::DistrictStreets& streets, const MappedRun& run,
                                     std::size_t stop, geo::Feet at) {
    return candidate(streets.network(), run, stop, at);
}

Panel candidatesPanelOf(const MappedRun& run, std::size_t stop,
                        const std::vector<Candidate>& candidates) {
    const auto& wanted = run.stops[stop];
    Panel panel{.heading = fmt::format("A place for stop {}", run.numberOf(stop)),
                .subject = headingOf(run),
                .totals = fmt::format("“{}”, {} students", wanted.name, wanted.students),
                .columns = {"Places found", {"", "Minutes", ""}, 1}};
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto& one = candidates[i];
        const auto& solution = one.shown.way.solution;
        const auto side =
            sideOf(one.shown.run.stops[stop], solution.stops[stop].halt, solution.sides);
        PanelRow row;
        row.mark = PanelRow::Mark::Candidate;
        row.number = std::string(1, static_cast<char>('A' + i));
        row.title = one.name;
        row.detail = fmt::format("run starts {}{}", solution.start.hhmm(),
                                 side.empty() ? "" : ", door on the " + side);
        row.cells[1] = signedMinutes(one.minutesMore);
        row.spoken =
            fmt::format("{}, {}, {} minutes, {}", row.number, row.title, row.cells[1], row.detail);
        row.index = i;
        panel.rows.push_back(std::move(row));
    }
    return panel;
}

}  // namespace map
