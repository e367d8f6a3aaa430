#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "map/window/panelrows.h"
#include "map/window/runscene.h"
#include "streets/district/districtstreets.h"

namespace map {

/// A place for one of a run's stops, and what the run comes to with it.
struct Candidate {
    std::string name = {};
    geo::Feet at = {};
    double minutesMore = 0;
    ShownRun shown = {};  ///< the run with the stop there
};

/// The run with the stop at a place that was pointed at; nothing where no bus can serve it there.
[[nodiscard]] std::optional<Candidate> candidateAt(const streets::DistrictStreets& streets,
                                                   const MappedRun& run, std::size_t stop,
                                                   geo::Feet at);

[[nodiscard]] Panel candidatesPanelOf(const MappedRun& run, std::size_t stop,
                                      const std::vector<Candidate>& candidates);

}  // namespace map
