#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "map/shown/runscene.h"
#include "map/window/panelrows.h"
#include "streets/district/districtstreets.h"

namespace map {

/// A place for one of a run's stops, and what the run comes to with it.
struct Candidate {
    std::string name = {};
    geo::Feet at = {};
    double minutesMore = 0;
    ShownRun shown = {};  ///< the run with the stop there
};

/// Places that the words name, the one that makes the run the least longer first, at most six;
/// those that no bus can serve are left out.
[[nodiscard]] std::vector<Candidate> candidatesFor(const streets::DistrictStreets& streets,
                                                   const MappedRun& run, std::size_t stop,
                                                   std::string_view words);
/// The run with the stop at a place that was pointed at; nothing where no bus can serve it there.
[[nodiscard]] std::optional<Candidate> candidateAt(const streets::DistrictStreets& streets,
                                                   const MappedRun& run, std::size_t stop,
                                                   geo::Feet at);

[[nodiscard]] Panel candidatesPanelOf(const MappedRun& run, std::size_t stop,
                                      const std::vector<Candidate>& candidates);

/// The candidates by their letters, and the run with the chosen one.
[[nodiscard]] Scene candidatesScene(const std::vector<Candidate>& candidates, std::size_t chosen,
                                    std::size_t stop);

}  // namespace map
