#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/date.h"
#include "streets/directions/directions.h"
#include "streets/network/network.h"

namespace streets {

/// A stop of a run as it is to be driven.
struct RunStop {
    std::int64_t id = 0;
    std::string stopId = {};
    std::string address = {};
    bool passed = false;  ///< a turn point: passed on the way, without a time of its own
    bool placed = true;   ///< false: the map does not know where it is
    geo::Feet at = {};
    DoorSide side = DoorSide::Either;
    int students = 0;
    double loadMinutes = 0;
};

/// Which end of a run is given.
enum class Anchor { Start, End };

/// A run to be solved; its stops keep their order.
struct RunToSolve {
    bool pickup = true;
    Anchor anchor = Anchor::Start;
    base::Date time = {};  ///< at the anchor
    std::vector<RunStop> stops = {};
};

/// What was found for a stop of the run.
struct SolvedStop {
    double driveMinutes = 0;  ///< from the stop before, in single precision
    double miles = 0;         ///< from the stop before, to two decimals
    std::optional<base::Date> time = {};
    double cumulatedMinutes = 0;
    double cumulatedMiles = 0;
    std::optional<Halt> halt = {};  ///< nothing for a stop without a place
    Leg way = {};                   ///< leads here, without a line where nothing does
};

/// A stop that the bus cannot serve.
struct Unserved {
    enum class Why {
        NoPlace,      ///< the map does not know where it is
        NoStreet,     ///< no street is near enough that a bus may drive
        WrongSide,    ///< none is that has it on the right of the bus
        NotReachable  ///< no way leads here from the stop before
    };
    std::size_t stop = 0;  ///< from 0
    Why why = Why::NoPlace;
};

/// A solved run. Where a stop is unserved, nothing else is told.
struct Solution {
    std::vector<Unserved> unserved = {};
    /// Stops on whose way the bus turns in a dead end where the rules would not have it.
    std::vector<std::size_t> deadEnds = {};
    std::vector<SolvedStop> stops = {};  ///< one for each of the run
    std::vector<DirectionLine> directions = {};
    base::Date start = {};
    base::Date end = {};
    double totalMinutes = 0;
    double totalMiles = 0;
    std::int64_t firstStop = 0;  ///< id; 0 without a stop that has a time
    std::int64_t lastStop = 0;   ///< id
    int timedStops = 0;
    bool sides = false;  ///< the halts' sides are known
};

/// Times and miles from stop to stop, directions and totals, in the order given. A stop that may be
/// served from either side gets the one that makes the run the quickest. On a network without
/// sides, stops without a place are named, but nothing leads to them.
[[nodiscard]] Solution solve(const Network& network, const RunToSolve& run);

/// "The stop 1204 (12 Main St) has no place on the map.": a sentence for the planner.
[[nodiscard]] std::string complaint(const RunStop& stop, Unserved::Why why);

/// Seconds from arriving at one stop to arriving at the next: (driving + load) in single precision,
/// rounded once to whole seconds, halves to even.
[[nodiscard]] std::int64_t gapSeconds(double loadMinutes, double driveMinutesToNext);

}  // namespace streets
