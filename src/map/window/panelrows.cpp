#include "map/window/panelrows.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

#include <fmt/format.h>

namespace map {

namespace {

using Mark = PanelRow::Mark;

constexpr double MuchMinutes = 3;  ///< from here on a difference stands out

std::string totalsOf(const ShownRun& shown, double minutes, double miles) {
    const auto seats = shown.run.seats ? fmt::format(" / {}", *shown.run.seats) : "";
    return fmt::format("Passengers {}{}   Miles {:.2f}   Min {:.1f}", shown.run.passengers(), seats,
                       miles, minutes);
}

/// Half of the day the run is in stands in its subject.
std::string timeText(const std::optional<base::Date>& time) {
    return time ? time->hhmm().substr(0, 5) : "";
}

std::string bellText(const MappedRun& run, const MappedStop& stop) {
    if (!run.bell || !stop.time) {
        return "";
    }
    const auto minutes = (run.bell->seconds - stop.time->seconds) / 60;
    return minutes == 0
               ? "at the bell"
               : fmt::format("{} minute{} {} the bell", std::abs(minutes),
                             std::abs(minutes) == 1 ? "" : "s", minutes > 0 ? "before" : "after");
}

std::string detailOf(const ShownRun& shown, std::size_t index) {
    const auto& stop = shown.run.stops[index];
    if (stop.kind == StopKind::School) {
        return bellText(shown.run, stop);
    }
    if (stop.kind == StopKind::Garage) {
        return index == 0 ? "start of the run" : "end of the run";
    }
    if (!stop.isPlaced) {
        return "not on the map";
    }
    auto text = ridersAt(shown.run, stop);
    if (index < shown.way.drawn.size()) {
        const auto side = sideOf(stop, shown.way.drawn[index].halt, shown.way.sides);
        text += side.empty() ? "" : ", " + side;
    }
    return text;
}

Mark markOf(StopKind kind) {
    return kind == StopKind::School   ? Mark::School
           : kind == StopKind::Garage ? Mark::Garage
                                      : Mark::Number;
}

PanelRow rowOf(const ShownRun& shown, std::size_t index) {
    const auto& troubles = shown.way.troubles;
    const auto& run = shown.run;
    const auto& stop = run.stops[index];
    const auto* trouble = stop.isPlaced ? troubleAt(troubles, index, true) : nullptr;
    const bool isWarned = trouble != nullptr && troubleAt(troubles, index) != nullptr;
    const int number = run.numberOf(index);
    const auto detail = detailOf(shown, index);
    PanelRow row{.mark = markOf(stop.kind),
                 .number = number == 0 ? "" : std::to_string(number),
                 .title = stop.name,
                 .detail = trouble != nullptr ? trouble->brief : detail,
                 .spoken = spokenStop(shown, index),
                 .isWarned = isWarned || !stop.isPlaced,
                 .index = index};
    row.spoken += stop.kind == StopKind::Stop || detail.empty() ? "" : ", " + detail;
    row.spoken += trouble == nullptr ? "" : (isWarned ? ", warning: " : ", ") + trouble->brief;
    return row;
}

/// A row for each stop but turn points, with its cells filled.
template <class Fill>
std::vector<PanelRow> rowsOf(const ShownRun& shown, Fill fill) {
    std::vector<PanelRow> rows;
    for (std::size_t i = 0; i < shown.run.stops.size(); ++i) {
        if (shown.run.stops[i].kind != StopKind::TurnPoint) {
            rows.push_back(rowOf(shown, i));
            fill(i, rows.back());
        }
    }
    return rows;
}

/// The garage of the run's route, where the bus comes from or goes to on an empty leg.
void addGarage(const ShownRun& shown, std::vector<PanelRow>& rows) {
    if (!shown.run.garage || !shown.way.empty || shown.run.stops.empty()) {
        return;
    }
    const bool first = shown.run.isPickup;
    const double minutes = shown.way.empty->seconds / 60;
    const auto& edge = first ? shown.run.stops.front() : shown.run.stops.back();
    const auto seconds = static_cast<std::int64_t>(std::lround(shown.way.empty->seconds));
    const auto time = edge.time ? std::optional(edge.time->plusSeconds(first ? -seconds : seconds))
                                : std::nullopt;
    PanelRow row{.mark = Mark::Garage,
                 .title = shown.run.garage->name,
                 .detail = first ? "empty to the first stop" : "empty from the last stop",
                 .cells = {first ? "" : fmt::format("{:.1f}", minutes), timeText(time), ""},
                 .index = GarageRow};
    row.spoken = fmt::format("{}, {}, {:.1f} minutes", row.title, row.detail, minutes);
    rows.insert(first ? rows.begin() : rows.end(), std::move(row));
}

double loadPercent(const MappedRun& run) {
    return run.seats.value_or(0) == 0 ? 0 : 100.0 * run.passengers() / *run.seats;
}

PanelRow rowOf(const ShownRun& shown, int place) {
    const auto& run = shown.run;
    const auto first = std::ranges::find(run.stops, StopKind::Stop, &MappedStop::kind);
    const auto from = first == run.stops.end() ? run.description : first->name;
    PanelRow row{.mark = Mark::Run,
                 .number = run.id,
                 .title = from,
                 .cells = {std::to_string(run.numberedStops()), fmt::format("{:.0f}", run.minutes),
                           run.seats ? fmt::format("{:.0f} %", loadPercent(run)) : ""},
                 .isWarned = !run.findings.empty(),
                 .canBeHidden = true,
                 .isShown = shown.isShown,
                 .colour = place,
                 .index = static_cast<std::size_t>(place)};
    row.spoken = fmt::format("Run {}, from {}, {} stops, {} minutes", run.id, from, row.cells[0],
                             row.cells[1]);
    row.spoken += row.cells[2].empty() ? "" : ", load " + row.cells[2];
    return row;
}

std::string sumOf(std::span<const ShownRun> runs) {
    int students = 0;
    double longest = 0;
    for (const auto& shown : runs) {
        students += shown.run.passengers();
        longest = std::max(longest, shown.run.minutes);
    }
    return fmt::format("Runs {}   Students {}   Longest {:.0f} min", runs.size(), students,
                       longest);
}

}  // namespace

Panel panelOf(const ShownRun& shown) {
    Panel panel{.heading = headingOf(shown.run),
                .subject = subjectOf(shown.run),
                .totals = totalsOf(shown, shown.run.minutes, shown.run.miles),
                .columns = {"Stop", {"Leg min", "Time", "On Bus"}, 1},
                .rows = rowsOf(shown, [&](std::size_t i, PanelRow& row) {
                    const auto& stop = shown.run.stops[i];
                    const bool counts = stop.kind == StopKind::Stop;
                    row.cells = {i == 0 ? "" : fmt::format("{:.1f}", stop.legMinutes),
                                 timeText(stop.time), counts ? std::to_string(stop.onTheBus) : ""};
                })};
    addGarage(shown, panel.rows);
    return panel;
}

Panel panelOf(const ShownRun& shown, const Comparison& comparison) {
    const auto& found = shown.way.solution;
    return {.heading = fmt::format("Run {}: before and after", shown.run.id),
            .subject = subjectOf(shown.run),
            .totals = totalsOf(shown, found.totalMinutes, found.totalMiles),
            .note = fmt::format("{}. {} {} another time.", gainText(comparison),
                                comparison.changed == 0 ? "No" : std::to_string(comparison.changed),
                                comparison.changed == 1 ? "stop gets" : "stops get"),
            .columns = {"Stop", {"Before", "After", "± min"}, 1},
            .rows = rowsOf(shown, [&](std::size_t i, PanelRow& row) {
                const auto& stop = comparison.stops[i];
                const auto later = stop.minutesLater();
                row.cells = {timeText(stop.before), timeText(stop.after),
                             later ? signedMinutes(*later) : ""};
                row.isStrong = std::abs(later.value_or(0)) >= MuchMinutes;
                row.spoken += later ? fmt::format(", {} minutes", row.cells[2]) : "";
            })};
}

Panel directionsPanelOf(const ShownRun& shown) {
    Panel panel = panelOf(shown);
    panel.columns = {"Directions", {"", "", ""}, 1};
    panel.rows.clear();
    for (const auto& line : shown.way.solution.directions) {
        const bool isStop = line.type == "Stop";
        const int number = isStop ? shown.run.numberOf(line.stop) : 0;
        const auto detail = line.text2 == "SKIP" ? std::string() : line.text2;
        panel.rows.push_back({.mark = number == 0 ? Mark::None : Mark::Number,
                              .number = number == 0 ? "" : std::to_string(number),
                              .title = line.text1,
                              .detail = detail,
                              .spoken = line.text1 + (detail.empty() ? "" : ", " + detail),
                              .index = line.stop});
    }
    return panel;
}

Panel panelOf(std::span<const ShownRun> runs, const std::string& heading) {
    Panel panel{
        .heading = heading, .totals = sumOf(runs), .columns = {"Run", {"Stops", "Min", "Load"}, 1}};
    for (std::size_t i = 0; i < runs.size(); ++i) {
        panel.rows.push_back(rowOf(runs[i], static_cast<int>(i)));
    }
    return panel;
}

std::string troubleText(const std::vector<Trouble>& troubles, const std::vector<std::string>& cures,
                        std::size_t stop) {
    constexpr int MostOfAKind = 2;
    std::string text;
    std::set<std::string> told;
    std::map<std::string, int> kinds;  // by the words before the colon
    int more = 0;
    for (std::size_t i = 0; i < troubles.size(); ++i) {
        const bool isTold = stop == NoStop ? !troubles[i].isRemark : troubles[i].stop == stop;
        if (!isTold) {
            continue;
        }
        if (stop == NoStop &&
            ++kinds[troubles[i].text.substr(0, troubles[i].text.find(':'))] > MostOfAKind) {
            ++more;
            continue;
        }
        text += (text.empty() ? "" : "\n") + troubles[i].text;
        const auto cure = i < cures.size() ? cures[i] : std::string();
        text += !cure.empty() && told.insert(cure).second ? " " + cure : "";
    }
    return more == 0 ? text
                     : text + fmt::format("\nAnd {} more of the kind: choose a stop to read of it.",
                                          more);
}

}  // namespace map
