#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/geo/projection.h"

namespace map {

/// Something that a typed text finds in the district.
struct SearchHit {
    enum class Kind { Run, Stop, School, Place };
    Kind kind = Kind::Stop;
    std::string key = {};   ///< the run's id, or the stop's; none of a place
    std::string name = {};  ///< what it is called
    geo::Feet at = {};      ///< not of a run
};

/// How many of a kind are found at the most.
inline constexpr int MostHits = 20;

/// Runs by id or description, placed stops by id, address or description; a text that is found at
/// the beginning comes first. Nothing for a blank text.
[[nodiscard]] std::vector<SearchHit> searchMap(ado::Connection& routing, std::string_view text);

/// Where the district's stops are, schools and garages among them, by id.
[[nodiscard]] std::vector<SearchHit> readAllStops(ado::Connection& routing);

}  // namespace map
