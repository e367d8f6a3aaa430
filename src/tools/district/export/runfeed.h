#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/district/export/feed.h"
#include "tools/district/export/snapshot.h"

namespace tools::district {

/// A district's active runs as trips of a feed, and what could not be one.
struct RunFeed {
    feed::Feed feed;
    /// Run and reason.
    std::vector<std::pair<std::string, std::string>> leftOut;
};

/// The middle of all stops that the map knows, in whole feet.
[[nodiscard]] geo::Feet middleOfStops(store::Database& routing);

/// A run is a trip of its route, or of a route of its own; a bus leaves a stop when its load time
/// is over. Directions and the garage are no stops of a trip, nor are stops without a place on the
/// map. Trips of one route that do not overlap are a block. A run without days, with fewer than two
/// stops, without a time at its first or last stop, or whose times go back is left out.
[[nodiscard]] RunFeed feedOfRuns(const DistrictSnapshot& district,
                                 const geo::Projection& projection);

}  // namespace tools::district
