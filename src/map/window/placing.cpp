#include "map/window/placing.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "map/run/solvedrun.h"
#include "map/shown/comparison.h"
#include "streets/district/placesearch.h"

namespace map {

namespace {

constexpr std::size_t MostCandidates = 6;

std::string letterOf(std::size_t candidate) {
    return {static_cast<char>('A' + static_cast<char>(candidate))};
}

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

std::vector<Candidate> candidatesFor(const streets::DistrictStreets& streets, const MappedRun& run,
                                     std::size_t stop, std::string_view words) {
    std::vector<Candidate> found;
    for (const auto& place : streets::findPlaces(streets, words, MostCandidates)) {
        if (auto one = candidate(streets.network(), run, stop, place.at)) {
            one->name = place.text;
            found.push_back(std::move(*one));
        }
    }
    std::ranges::stable_sort(found, {}, &Candidate::minutesMore);
    return found;
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
        row.number = letterOf(i);
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

/// What stays as it is becomes pale.
Scene candidatesScene(const std::vector<Candidate>& candidates, std::size_t chosen,
                      std::size_t stop) {
    Scene scene = sceneOf(candidates[chosen].shown, NoStop);
    auto& run = scene.runs.front();
    auto leg = run.legs.begin();
    const auto& solved = candidates[chosen].shown.way.solution.stops;
    for (std::size_t i = 0; i < solved.size(); ++i) {
        if (solved[i].way.line.size() > 1) {
            leg->isPale = i != stop && i != stop + 1;
            leg->plate.clear();
            ++leg;
        }
    }
    std::erase_if(run.stops, [&](const DrawnStop& drawn) {
        return drawn.at.x == candidates[chosen].at.x && drawn.at.y == candidates[chosen].at.y;
    });
    for (auto& drawn : run.stops) {
        drawn.isPale = true;
    }
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto& halt = candidates[i].shown.way.solution.stops[stop].halt;
        DrawnStop drawn;
        drawn.at = candidates[i].at;
        drawn.onStreet = halt ? std::optional(halt->at) : std::nullopt;
        drawn.number = letterOf(i);
        drawn.plate = signedMinutes(candidates[i].minutesMore) + " min";
        drawn.look = StopLook::Candidate;
        drawn.isChosen = i == chosen;
        run.stops.push_back(std::move(drawn));
    }
    return scene;
}

}  // namespace map
