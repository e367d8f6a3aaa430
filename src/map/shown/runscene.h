#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "map/drawing/scene.h"
#include "map/shown/comparison.h"
#include "map/shown/mappedrun.h"
#include "map/shown/troubles.h"
#include "streets/network/network.h"
#include "streets/solve/solve.h"

namespace map {

/// The run as the solver takes it: in the order stored, from the end that its times count from.
[[nodiscard]] streets::RunToSolve runToSolve(const MappedRun& run);

/// The way that a run drives on today's streets.
struct RunWay {
    streets::Solution solution = {};  ///< where it has unserved stops there is no way
    /// What is drawn: the solution's, or where it lacks but stops without a place, those of the
    /// rest. One for each stop of the run; empty where there is nothing to draw.
    std::vector<streets::SolvedStop> drawn = {};
    /// Between the garage and the run's first stop on a run to school, from its last one on a
    /// run home.
    std::optional<streets::Leg> empty = {};

    bool sides = false;  ///< the sides of streets count
    std::vector<Trouble> troubles = {};

    [[nodiscard]] bool isKnown() const {
        return solution.unserved.empty() && !solution.stops.empty();
    }
};

[[nodiscard]] RunWay wayOf(const streets::Network& network, const MappedRun& run);

/// A run with its way, as several of them are shown.
struct ShownRun {
    MappedRun run = {};
    RunWay way = {};
    bool isShown = true;
};

/// What of a scene is to be seen at first: its runs, and the garage unless it lies so far away
/// that they would become small.
[[nodiscard]] streets::Box firstSight(const Scene& scene);

/// Whether a scene of the run has it among its stops: neither school, garage nor turn point, and
/// placed.
[[nodiscard]] bool isDrawn(const MappedStop& stop);

/// One run: its way with the minutes of each leg, its numbered stops, school and garage.
[[nodiscard]] Scene sceneOf(const ShownRun& shown, std::size_t chosenStop);
/// A run before and after: what is no longer driven of the old lines, and minutes at the stops.
[[nodiscard]] Scene comparisonScene(const ShownRun& shown, const Comparison& comparison,
                                    std::span<const std::vector<geo::Feet>> oldLines,
                                    std::size_t chosenStop);
/// Several runs in their colours, the chosen one broader.
[[nodiscard]] Scene sceneOf(std::span<const ShownRun> runs, std::size_t chosen);

/// The lines that a run drives, leg by leg.
[[nodiscard]] std::vector<std::vector<geo::Feet>> linesOf(const RunWay& way);

/// Whether a finding is about a stop.
[[nodiscard]] bool names(const RunFinding& finding, const MappedStop& stop);
/// The stop for those who do not see the map, with its side.
[[nodiscard]] std::string spokenStop(const ShownRun& shown, std::size_t stop);
/// "east side": where the stop lies from the middle of its street; "" where sides do not count.
[[nodiscard]] std::string sideOf(const MappedStop& stop, const std::optional<streets::Halt>& halt,
                                 bool sides);

}  // namespace map
