#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/geo/projection.h"
#include "tools/district/import/feed/feedfiles.h"

/// A transit feed as it is read: places in degrees, times in seconds from the day's midnight, past
/// 24 hours for a day that goes on.
namespace tools::district::transit {

struct Stop {
    std::string id;
    std::string code;
    std::string name;
    geo::Degrees at;
};

struct Route {
    std::string id;
    std::string shortName;
    std::string longName;
};

struct StopTime {
    double order = 0;      ///< of the feed
    std::size_t stop = 0;  ///< of Feed::stops
    std::optional<int> arrival;
    std::optional<int> departure;
};

struct Trip {
    std::string id;
    std::size_t route = 0;
    std::string service;
    std::string headsign;  ///< empty where the feed says "null"
    std::string block;
    std::string shape;
    bool isRepeated = false;      ///< by frequencies, its own times are none
    std::vector<StopTime> times;  ///< in order
};

/// A day as the number of days since 1899-12-30, of which a Saturday is 0.
using Day = int;
/// 0 is Monday.
[[nodiscard]] constexpr int weekdayOf(Day day) { return (day + 5) % 7; }

struct Feed {
    std::vector<Stop> stops;
    std::vector<Route> routes;
    std::vector<Trip> trips;
    std::map<std::string, std::set<Day>> services;
    std::map<std::string, std::vector<geo::Degrees>> shapes;
};

/// Raises base::RunTimeError with file and line.
[[nodiscard]] Feed readFeed(const FeedFiles& files);

}  // namespace tools::district::transit
