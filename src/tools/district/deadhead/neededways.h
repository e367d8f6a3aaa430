#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/geo/projection.h"
#include "platform/store/base/database.h"

namespace tools::district {

/// A place where empty travel begins or ends.
struct TravelEnd {
    std::string stop;
    geo::Feet at;
    bool placed = false;
};

/// From one stop to another, by internal ids.
using TravelWay = std::pair<std::int64_t, std::int64_t>;

/// The ways that a district's dead-head may ask for.
struct NeededWays {
    std::map<std::int64_t, TravelEnd> ends;
    std::vector<TravelWay> ways;  ///< ascending, each once; never from a stop to itself
    std::size_t routes = 0;
};

/// Of each route: from its garage to the first stop of each of its runs, from the last stop of each
/// run to the garage and to the first stop of each other run of the route. With `all` those between
/// any two of all garages, schools, and first and last stops. Raises base::RunTimeError for more
/// than a million.
[[nodiscard]] NeededWays neededWays(store::Database& routing, bool all);

}  // namespace tools::district
