#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "map/shown/mappedrun.h"
#include "platform/ado/connection.h"
#include "platform/base/error.h"
#include "streets/solve/solve.h"

namespace map {

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

}  // namespace map
