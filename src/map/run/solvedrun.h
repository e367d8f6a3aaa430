#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "map/run/mappedrun.h"
#include "platform/ado/connection.h"
#include "platform/base/error.h"
#include "streets/solve/solve.h"

namespace map {

/// The run as the solver takes it: in the order stored, from the end that its times count from.
[[nodiscard]] streets::RunToSolve runToSolve(const MappedRun& run);

/// Another planner has changed the run or its stops since they were read; nothing was written.
class ChangedMeanwhile : public base::RunTimeError {
public:
    explicit ChangedMeanwhile(const std::string& what);
};

/// Writes what was found for a run as one unit of work: times, distances and sides of its stops,
/// its directions, its times and totals, who did it, and that it needs no solving any more.
/// Raises ChangedMeanwhile where its stops are no longer those that were solved, in their order;
/// what the connection raises.
void saveSolution(ado::Connection& routing, const MappedRun& run, const streets::Solution& solution,
                  const std::string& user);

/// The run with one of its stops in front of another one, or behind the last one; schools and
/// garages stay where they are. Nothing where that changes nothing.
[[nodiscard]] std::optional<MappedRun> withStopMoved(const MappedRun& run, std::size_t stop,
                                                     std::size_t before);
/// The run with its stops in another order: their places in it from 0.
[[nodiscard]] MappedRun inOrder(const MappedRun& run, std::span<const std::size_t> order);
/// The run with one of its stops at another place.
[[nodiscard]] MappedRun withStopAt(const MappedRun& run, std::size_t stop, geo::Feet at);

/// Writes a run as it was changed on the map, and its solution, as one unit of work: stops that
/// changed places as a planner's own moves with their log rows, stops that lie elsewhere with their
/// new place, by which their other runs have to be solved anew. Raises ChangedMeanwhile where
/// another planner has changed any of it since the run was read; what the connection raises.
void saveChanged(ado::Connection& routing, const MappedRun& stored, const MappedRun& changed,
                 const streets::Solution& solution, const std::string& user);

/// A solution beside what is stored of the run.
struct Comparison {
    struct Stop {
        std::optional<base::Date> before = {};
        std::optional<base::Date> after = {};
        /// Minutes later; nothing where either is missing.
        [[nodiscard]] std::optional<double> minutesLater() const;
    };
    std::vector<Stop> stops = {};  ///< one for each of the run
    double minutesMore = 0;        ///< of the whole run
    double milesMore = 0;
    int changed = 0;  ///< stops whose times differ by half a minute or more
};

[[nodiscard]] Comparison compare(const MappedRun& run, const streets::Solution& solution);
/// "6.3 minutes, 1.77 miles shorter".
[[nodiscard]] std::string gainText(const Comparison& comparison);
/// "+2.9", "−0.7", "0.0"; the minus is a true one.
[[nodiscard]] std::string signedMinutes(double minutes);

}  // namespace map
