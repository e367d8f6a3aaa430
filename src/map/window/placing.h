#pragma once

#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "map/shown/runscene.h"
#include "map/window/panelrows.h"
#include "streets/district/districtstreets.h"

namespace map {

/// A place for one of a run's stops, and what the run comes to with it. Where other stops have no
/// place yet, the figures are those of the rest.
struct Candidate {
    std::string name = {};
    geo::Feet at = {};
    std::size_t stop = 0;  ///< where it comes in the order, from 0
    std::string side = {};
    std::string crossed = {};  ///< the street between it and the address that was asked for
    double minutesMore = 0;
    ShownRun shown = {};                    ///< the run with the stop there
    std::vector<std::string> effects = {};  ///< on the run, a line each: its start, times, seats
};

/// Places that the words name, on both sides of their streets, each at the best position in the
/// order: the one that makes the run the least longer first, at most six. Where streets have sides,
/// the stop asks for the door on its own. Those that no bus can serve are left out. Solves the run
/// many times: not for the thread of a form.
[[nodiscard]] std::vector<Candidate> candidatesFor(const streets::DistrictStreets& streets,
                                                   const MappedRun& run, std::size_t stop,
                                                   std::string_view words,
                                                   const std::stop_token& given);

/// The run with a stop at a place that was pointed at, in today's order.
struct Pointed {
    std::string corner = {};
    ShownRun shown = {};
};
/// Nothing where no bus can serve it there.
[[nodiscard]] std::optional<Pointed> pointedAt(const streets::Network& network,
                                               const MappedRun& run, std::size_t stop,
                                               geo::Feet at);

[[nodiscard]] Panel candidatesPanelOf(const MappedRun& run, std::size_t stop,
                                      const std::vector<Candidate>& candidates);

/// The candidates by their letters, and the run with the chosen one.
[[nodiscard]] Scene candidatesScene(const std::vector<Candidate>& candidates, std::size_t chosen);

}  // namespace map
