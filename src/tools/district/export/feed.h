#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/date.h"
#include "platform/geo/projection.h"

/// A transit feed (GTFS) as plain values. Identifiers are texts of the feed; times are seconds from
/// the day's midnight, past 24 hours for a day that goes on.
namespace tools::district::feed {

struct Agency {
    std::string name;
    std::string url;
    std::string timezone;  ///< "America/Chicago"
};

struct Stop {
    std::int64_t id = 0;
    std::string code;
    std::string name;
    geo::Degrees at;
};

struct Route {
    std::string id;
    std::string shortName;
    std::string longName;
};

enum class Boarding { Both, OnlyOn, OnlyOff };

struct StopTime {
    std::int64_t stop = 0;
    std::optional<std::int64_t> arrival = {};
    std::optional<std::int64_t> departure = {};
    Boarding boarding = Boarding::Both;
};

/// The days on which something runs, Monday first.
using Days = std::array<bool, 5>;

struct Trip {
    std::string id;
    std::string route;
    Days days{};
    std::string headsign;
    bool toSchool = false;
    std::string block = {};
    std::vector<StopTime> times;
};

struct Feed {
    Agency agency;
    base::Date from;
    base::Date until;
    std::vector<Stop> stops;
    std::vector<Route> routes;
    std::vector<Trip> trips;
};

/// Writes the feed's files into a folder. Raises base::RunTimeError.
void write(const Feed& feed, const std::filesystem::path& folder);

}  // namespace tools::district::feed
