#include "map/shown/runscene.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include <fmt/format.h>

#include "map/ground/camera.h"

namespace map {

namespace {

streets::RunStop stopToSolve(const MappedStop& stop) {
    return {.id = stop.intStopId,
            .stopId = stop.stopId,
            .address = stop.name,
            .passed = stop.kind == StopKind::TurnPoint,
            .placed = stop.isPlaced,
            .at = stop.at,
            .side = stop.wantsRightSide ? streets::DoorSide::Right : streets::DoorSide::Either,
            .students = stop.students,
            .loadMinutes = stop.loadMinutes};
}

/// The quickest way between two places, whichever side of their streets.
std::optional<streets::Leg> legBetween(const streets::Network& network, geo::Feet from,
                                       geo::Feet to) {
    std::optional<streets::Leg> best;
    for (const auto& start : network.haltsAt(from, streets::DoorSide::Either)) {
        for (const auto& end : network.haltsAt(to, streets::DoorSide::Either)) {
            auto leg = network.leg(start, end);
            if (leg && (!best || leg->seconds < best->seconds)) {
                best = std::move(leg);
            }
        }
    }
    return best;
}

const MappedStop* endOf(const MappedRun& run, bool first) {
    const auto isServed = [](const MappedStop& stop) {
        return stop.isPlaced && stop.kind != StopKind::TurnPoint;
    };
    if (first) {
        const auto found = std::ranges::find_if(run.stops, isServed);
        return found == run.stops.end() ? nullptr : &*found;
    }
    const auto found = std::find_if(run.stops.rbegin(), run.stops.rend(), isServed);
    return found == run.stops.rend() ? nullptr : &*found;
}

std::optional<streets::Leg> emptyLegOf(const streets::Network& network, const MappedRun& run) {
    const auto* stop = endOf(run, run.isPickup);
    if (!run.garage || stop == nullptr || stop->kind == StopKind::Garage) {
        return std::nullopt;
    }
    return run.isPickup ? legBetween(network, run.garage->at, stop->at)
                        : legBetween(network, stop->at, run.garage->at);
}

/// The way past stops that have no place; nothing where another one cannot be served.
std::vector<streets::SolvedStop> wayOfPlaced(const streets::Network& network, const MappedRun& run,
                                             const streets::Solution& whole) {
    auto rest = runToSolve(run);
    std::vector<std::size_t> kept;
    for (std::size_t i = 0; i < rest.stops.size(); ++i) {
        if (rest.stops[i].placed) {
            kept.push_back(i);
        }
    }
    std::erase_if(rest.stops, [](const streets::RunStop& stop) { return !stop.placed; });
    auto found = kept.size() == run.stops.size() ? whole : streets::solve(network, rest);
    if (!found.unserved.empty() || found.stops.size() != kept.size()) {
        return {};
    }
    std::vector<streets::SolvedStop> stops(run.stops.size());
    for (std::size_t i = 0; i < kept.size(); ++i) {
        stops[kept[i]] = std::move(found.stops[i]);
    }
    return stops;
}

std::string minutesText(double minutes) {
    return minutes > 0 ? fmt::format("{:.1f}", minutes) : "";
}

/// The direction of the way where it comes to its end, in degrees from north.
double headingAtEnd(const std::vector<geo::Feet>& line) {
    if (line.size() < 2) {
        return 0;
    }
    const auto& from = line[line.size() - 2];
    const auto& to = line.back();
    return std::atan2(to.x - from.x, to.y - from.y) * 180 / std::numbers::pi;
}

DrawnStop drawnStop(const ShownRun& shown, std::size_t index, std::size_t chosen) {
    const auto& stop = shown.run.stops[index];
    DrawnStop drawn;
    drawn.at = stop.at;
    drawn.number = std::to_string(shown.run.numberOf(index));
    drawn.isChosen = index == chosen;
    drawn.showsBus = drawn.isChosen;
    if (!shown.way.drawn.empty()) {
        const auto& solved = shown.way.drawn[index];
        drawn.heading = headingAtEnd(solved.way.line);
        if (shown.way.sides && solved.halt) {
            drawn.onStreet = solved.halt->at;
        }
    }
    return drawn;
}

DrawnRun drawnRun(const ShownRun& shown, std::size_t chosenStop) {
    DrawnRun drawn;
    const auto& stops = shown.way.drawn;
    for (std::size_t i = 0; i < stops.size(); ++i) {
        if (stops[i].way.line.size() > 1) {
            drawn.legs.push_back(
                {.line = stops[i].way.line, .plate = minutesText(shown.run.stops[i].legMinutes)});
        }
    }
    if (shown.way.empty && shown.way.empty->line.size() > 1) {
        drawn.legs.push_back({.line = shown.way.empty->line,
                              .plate = minutesText(shown.way.empty->seconds / 60) + " min",
                              .isEmpty = true});
    }
    for (std::size_t i = 0; i < shown.run.stops.size(); ++i) {
        if (isDrawn(shown.run.stops[i])) {
            drawn.stops.push_back(drawnStop(shown, i, chosenStop));
            drawn.stops.back().isWarned = troubleAt(shown.way.troubles, i) != nullptr;
        }
    }
    return drawn;
}

void addPlaces(const MappedRun& run, Scene& scene) {
    const auto isThere = [&](geo::Feet at) {
        return std::ranges::any_of(scene.places, [&](const DrawnPlace& place) {
            return place.at.x == at.x && place.at.y == at.y;
        });
    };
    for (const auto& stop : run.stops) {
        const bool isSchool = stop.kind == StopKind::School;
        if ((isSchool || stop.kind == StopKind::Garage) && stop.isPlaced && !isThere(stop.at)) {
            scene.places.push_back(
                {stop.at, isSchool ? PlaceKind::School : PlaceKind::Garage, stop.name});
        }
    }
    if (run.garage && !isThere(run.garage->at)) {
        scene.places.push_back({run.garage->at, PlaceKind::Garage, run.garage->name});
    }
}

/// A straight bit of a line.
struct Bit {
    geo::Feet from;
    geo::Feet to;
};

using Lines = std::vector<std::vector<geo::Feet>>;

std::vector<Bit> bitsOf(const Lines& lines) {
    std::vector<Bit> bits;
    for (const auto& line : lines) {
        for (std::size_t i = 1; i < line.size(); ++i) {
            bits.push_back({line[i - 1], line[i]});
        }
    }
    return bits;
}

/// Most legs of a run stay as they were, and comparing all bits with all takes its time.
Lines changedOf(std::span<const std::vector<geo::Feet>> old, const Lines& now) {
    const auto isSame = [](geo::Feet one, geo::Feet other) {
        return one.x == other.x && one.y == other.y;
    };
    Lines changed;
    std::ranges::copy_if(old, std::back_inserter(changed), [&](const auto& line) {
        return std::ranges::none_of(
            now, [&](const auto& other) { return std::ranges::equal(line, other, isSame); });
    });
    return changed;
}

/// Whether they come within a foot of each other, as far as their boxes say.
bool areNear(const Bit& one, const Bit& other) {
    const auto apart = [](double from, double to, double otherFrom, double otherTo) {
        return std::max(from, to) + 1 < std::min(otherFrom, otherTo) ||
               std::max(otherFrom, otherTo) + 1 < std::min(from, to);
    };
    return !apart(one.from.x, one.to.x, other.from.x, other.to.x) &&
           !apart(one.from.y, one.to.y, other.from.y, other.to.y);
}

/// From and until where of a bit another one covers it, as parts of its length; nothing where they
/// do not lie on one line, a foot at the most apart.
std::optional<std::pair<double, double>> covered(const Bit& bit, const Bit& by) {
    const double x = bit.to.x - bit.from.x;
    const double y = bit.to.y - bit.from.y;
    const double length = std::hypot(x, y);
    const auto along = [&](geo::Feet at) {
        return ((at.x - bit.from.x) * x + (at.y - bit.from.y) * y) / (length * length);
    };
    const auto beside = [&](geo::Feet at) {
        return std::abs((at.x - bit.from.x) * y - (at.y - bit.from.y) * x) / length;
    };
    if (length == 0 || beside(by.from) > 1 || beside(by.to) > 1) {
        return std::nullopt;
    }
    const auto first = std::clamp(std::min(along(by.from), along(by.to)), 0.0, 1.0);
    const auto last = std::clamp(std::max(along(by.from), along(by.to)), 0.0, 1.0);
    return last > first ? std::optional(std::pair(first, last)) : std::nullopt;
}

/// What others leave of a bit, as parts of its length, in order.
std::vector<std::pair<double, double>> bareParts(const Bit& bit, const std::vector<Bit>& others) {
    std::vector<std::pair<double, double>> taken;
    for (const auto& other : others) {
        if (const auto part = areNear(bit, other) ? covered(bit, other) : std::nullopt) {
            taken.push_back(*part);
        }
    }
    std::ranges::sort(taken);
    std::vector<std::pair<double, double>> bare;
    double at = 0;
    for (const auto& [first, last] : taken) {
        if (first > at) {
            bare.emplace_back(at, first);
        }
        at = std::max(at, last);
    }
    if (at < 1) {
        bare.emplace_back(at, 1);
    }
    return bare;
}

/// Of the old lines, what the new ones do not drive, in either direction.
Lines without(std::span<const std::vector<geo::Feet>> old, const Lines& now) {
    Lines rest;
    const auto others = bitsOf(now);
    for (const auto& bit : bitsOf(changedOf(old, now))) {
        const auto at = [&](double part) {
            return geo::Feet{bit.from.x + (bit.to.x - bit.from.x) * part,
                             bit.from.y + (bit.to.y - bit.from.y) * part};
        };
        for (const auto& [first, last] : bareParts(bit, others)) {
            const auto from = at(first);
            const bool goesOn =
                !rest.empty() && rest.back().back().x == from.x && rest.back().back().y == from.y;
            if (!goesOn) {
                rest.push_back({from});
            }
            rest.back().push_back(at(last));
        }
    }
    return rest;
}

}  // namespace

streets::RunToSolve runToSolve(const MappedRun& run) {
    streets::RunToSolve told;
    told.pickup = run.isPickup;
    told.anchor = run.countsFromStart ? streets::Anchor::Start : streets::Anchor::End;
    told.time = (run.countsFromStart ? run.start : run.end).value_or(base::Date{});
    std::ranges::transform(run.stops, std::back_inserter(told.stops), stopToSolve);
    return told;
}

bool isDrawn(const MappedStop& stop) { return stop.kind == StopKind::Stop && stop.isPlaced; }

RunWay wayOf(const streets::Network& network, const MappedRun& run) {
    RunWay way{.solution = streets::solve(network, runToSolve(run)),
               .empty = emptyLegOf(network, run),
               .sides = network.hasSides()};
    way.drawn = way.isKnown() ? way.solution.stops : wayOfPlaced(network, run, way.solution);
    way.troubles = troublesOf(run, way);
    return way;
}

Scene sceneOf(const ShownRun& shown, std::size_t chosenStop) {
    Scene scene;
    scene.runs.push_back(drawnRun(shown, chosenStop));
    addPlaces(shown.run, scene);
    return scene;
}

Scene comparisonScene(const ShownRun& shown, const Comparison& comparison,
                      std::span<const std::vector<geo::Feet>> oldLines, std::size_t chosenStop) {
    Scene scene = sceneOf(shown, chosenStop);
    auto& run = scene.runs.front();
    for (auto& leg : run.legs) {
        leg.plate.clear();
    }
    auto drawn = run.stops.begin();
    for (std::size_t i = 0; i < shown.run.stops.size(); ++i) {
        if (!isDrawn(shown.run.stops[i])) {
            continue;
        }
        const auto later = signedMinutes(comparison.stops[i].minutesLater().value_or(0));
        drawn->plate = later == "0.0" ? "" : later;
        ++drawn;
    }
    scene.oldWay = without(oldLines, linesOf(shown.way));
    return scene;
}

Scene sceneOf(std::span<const ShownRun> runs, std::size_t chosen) {
    Scene scene;
    scene.isVeiled = true;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        if (!runs[i].isShown) {
            scene.runs.emplace_back();
            continue;
        }
        auto run = drawnRun(runs[i], NoStop);
        std::erase_if(run.legs, [](const DrawnLeg& leg) { return leg.isEmpty; });
        for (auto& leg : run.legs) {
            leg.plate.clear();
        }
        for (auto& stop : run.stops) {
            stop.look = StopLook::Ring;
        }
        run.name = runs[i].run.id;
        run.colour = static_cast<int>(i);
        run.isChosen = i == chosen;
        scene.runs.push_back(std::move(run));
        addPlaces(runs[i].run, scene);
    }
    std::erase_if(scene.places,
                  [](const DrawnPlace& place) { return place.kind == PlaceKind::Garage; });
    return scene;
}

streets::Box firstSight(const Scene& scene) {
    constexpr double Farther = 1.6;
    const auto all = extentOf(scene);
    Scene near = scene;
    for (auto& run : near.runs) {
        std::erase_if(run.legs, [](const DrawnLeg& leg) { return leg.isEmpty; });
    }
    std::erase_if(near.places,
                  [](const DrawnPlace& place) { return place.kind == PlaceKind::Garage; });
    const auto runs = extentOf(near);
    const auto sideOf = [](const streets::Box& box) {
        return std::max(box.high.x - box.low.x, box.high.y - box.low.y);
    };
    return isEmpty(runs) || sideOf(all) <= Farther * sideOf(runs) ? all : runs;
}

std::vector<std::vector<geo::Feet>> linesOf(const RunWay& way) {
    std::vector<std::vector<geo::Feet>> lines;
    for (const auto& stop : way.drawn) {
        if (stop.way.line.size() > 1) {
            lines.push_back(stop.way.line);
        }
    }
    return lines;
}

bool names(const RunFinding& finding, const MappedStop& stop) {
    const auto named = finding.text.find("StopID: " + stop.stopId);
    const auto behind = named + 8 + stop.stopId.size();
    return !stop.stopId.empty() && named != std::string::npos &&
           (behind == finding.text.size() || finding.text[behind] == ' ' ||
            finding.text[behind] == '.' || finding.text[behind] == ',');
}

std::string spokenStop(const ShownRun& shown, std::size_t stop) {
    const bool isKnown = stop < shown.way.drawn.size();
    return spokenStop(
        shown.run, stop,
        isKnown ? sideOf(shown.run.stops[stop], shown.way.drawn[stop].halt, shown.way.sides) : "");
}

std::string sideOf(const MappedStop& stop, const std::optional<streets::Halt>& halt, bool sides) {
    if (!sides || !halt) {
        return "";
    }
    const double east = stop.at.x - halt->at.x;
    const double north = stop.at.y - halt->at.y;
    if (std::abs(east) > std::abs(north)) {
        return east > 0 ? "east side" : "west side";
    }
    return north > 0 ? "north side" : "south side";
}

}  // namespace map
