#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/district/import/feed/transitfeed.h"

namespace tools::district {

/// What tells school trips from a city's others. No sign holds in every city, so the user chooses.
struct TripSign {
    enum class Of { Route, Service, Headsign, End };
    Of of = Of::Route;
    std::string pattern;  ///< a regular expression, without regard to case
};

/// "route~AM$", "service~Term", "headsign~School", "ends-at~College": what a trip's route id, its
/// service, its headsign, or the name of its first or last stop holds. Raises base::RunTimeError.
[[nodiscard]] TripSign tripSign(std::string_view text);

/// The trips that have any of the signs, by their places in the feed.
[[nodiscard]] std::vector<std::size_t> tripsWith(const transit::Feed& feed,
                                                 const std::vector<TripSign>& signs);

/// What signs a feed has, with how many trips each would choose, for somebody who has chosen none.
[[nodiscard]] std::string signsTold(const transit::Feed& feed);

/// Whether a stop's name is that of a school.
[[nodiscard]] bool namesSchool(std::string_view name);

}  // namespace tools::district
