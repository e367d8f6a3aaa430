#include "tools/district/import/feed/transitfeed.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "platform/base/date.h"

namespace tools::district::transit {

namespace {

constexpr int LatestHour = 72;
constexpr Day LongestCalendar = 3 * 366;

/// Where each of the feed's ids stands.
class Places {
public:
    void add(std::string id, std::size_t place) { places_.emplace(std::move(id), place); }
    [[nodiscard]] std::size_t of(const FeedTable& table, std::string_view column) const {
        const auto found = places_.find(table.cell(column));
        if (found == places_.end()) {
            table.refuseLine(fmt::format("there is no {} \"{}\"", column, table.cell(column)));
        }
        return found->second;
    }

private:
    std::map<std::string, std::size_t, std::less<>> places_;
};

std::optional<int> digits(std::string_view text) {
    int value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        value = value * 10 + (c - '0');
    }
    return text.empty() || text.size() > 8 ? std::nullopt : std::optional(value);
}

/// "7:05:30", hours beyond 24 for the day after.
std::optional<int> timeIn(const FeedTable& table, std::string_view column) {
    const std::string_view text = table.cell(column);
    if (text.empty()) {
        return std::nullopt;
    }
    const std::size_t first = text.find(':');
    const std::size_t second = first == std::string_view::npos ? first : text.find(':', first + 1);
    if (second != std::string_view::npos) {
        const auto hours = digits(text.substr(0, first));
        const auto minutes = digits(text.substr(first + 1, second - first - 1));
        const auto seconds = digits(text.substr(second + 1));
        if (hours && minutes && seconds && *hours <= LatestHour && *minutes < 60 && *seconds < 60) {
            return *hours * 3600 + *minutes * 60 + *seconds;
        }
    }
    table.refuseLine(fmt::format("{} is no time: \"{}\"", column, text));
}

/// "20160918"
Day dayIn(const FeedTable& table, std::string_view column) {
    const std::string_view text = table.cell(column);
    const auto number = text.size() == 8 ? digits(text) : std::nullopt;
    if (number) {
        const int year = *number / 10000;
        const int month = *number / 100 % 100;
        const int day = *number % 100;
        if (year >= 1900 && month >= 1 && month <= 12 && day >= 1 && day <= 31) {
            return static_cast<Day>(base::Date::of(year, month, day).seconds /
                                    base::Date::SecondsPerDay);
        }
    }
    table.refuseLine(fmt::format("{} is no date: \"{}\"", column, text));
}

Places readStops(const FeedFiles& files, Feed& feed) {
    Places places;
    for (FeedTable table(files, "stops.txt"); table.next();) {
        // Stations, entrances and the like are no places where a bus stops, and may have none.
        if (const auto type = table.cell("location_type"); !type.empty() && type != "0") {
            continue;
        }
        places.add(table.needed("stop_id"), feed.stops.size());
        feed.stops.push_back({table.needed("stop_id"),
                              std::string(table.cell("stop_code")),
                              std::string(table.cell("stop_name")),
                              {table.number("stop_lat"), table.number("stop_lon")}});
    }
    return places;
}

Places readRoutes(const FeedFiles& files, Feed& feed) {
    Places places;
    for (FeedTable table(files, "routes.txt"); table.next();) {
        places.add(table.needed("route_id"), feed.routes.size());
        feed.routes.push_back({table.needed("route_id"),
                               std::string(table.cell("route_short_name")),
                               std::string(table.cell("route_long_name"))});
    }
    return places;
}

void readCalendar(const FeedFiles& files, Feed& feed) {
    constexpr std::array Columns = {"monday", "tuesday",  "wednesday", "thursday",
                                    "friday", "saturday", "sunday"};
    for (FeedTable table(files, "calendar.txt"); table.next();) {
        auto& days = feed.services[table.needed("service_id")];
        const Day last = dayIn(table, "end_date");
        const Day first = dayIn(table, "start_date");
        if (last - first > LongestCalendar) {
            table.refuseLine("the calendar is longer than three years");
        }
        for (Day day = first; day <= last; ++day) {
            if (table.cell(Columns[static_cast<std::size_t>(weekdayOf(day))]) == "1") {
                days.insert(day);
            }
        }
    }
    for (FeedTable table(files, "calendar_dates.txt"); table.next();) {
        auto& days = feed.services[table.needed("service_id")];
        const Day day = dayIn(table, "date");
        if (table.cell("exception_type") == "2") {
            days.erase(day);
        } else {
            days.insert(day);
        }
    }
}

Places readTrips(const FeedFiles& files, const Places& routes, Feed& feed) {
    Places places;
    for (FeedTable table(files, "trips.txt"); table.next();) {
        Trip trip;
        trip.id = table.needed("trip_id");
        trip.route = routes.of(table, "route_id");
        trip.service = table.needed("service_id");
        // Some publishers write the word for a headsign that they do not have.
        trip.headsign = table.cell("trip_headsign") == "null" ? "" : table.cell("trip_headsign");
        trip.block = table.cell("block_id");
        trip.shape = table.cell("shape_id");
        places.add(trip.id, feed.trips.size());
        feed.trips.push_back(std::move(trip));
    }
    return places;
}

void readTimes(const FeedFiles& files, const Places& trips, const Places& stops, Feed& feed) {
    for (FeedTable table(files, "stop_times.txt"); table.next();) {
        feed.trips[trips.of(table, "trip_id")].times.push_back(
            {table.number("stop_sequence"), stops.of(table, "stop_id"),
             timeIn(table, "arrival_time"), timeIn(table, "departure_time")});
    }
    for (Trip& trip : feed.trips) {
        std::ranges::stable_sort(trip.times, {}, &StopTime::order);
    }
    for (FeedTable table(files, "frequencies.txt"); table.next();) {
        feed.trips[trips.of(table, "trip_id")].isRepeated = true;
    }
}

void readShapes(const FeedFiles& files, Feed& feed) {
    std::map<std::string, std::vector<std::pair<double, geo::Degrees>>> read;
    for (FeedTable table(files, "shapes.txt"); table.next();) {
        read[table.needed("shape_id")].push_back(
            {table.number("shape_pt_sequence"),
             {table.number("shape_pt_lat"), table.number("shape_pt_lon")}});
    }
    for (auto& [id, points] : read) {
        std::ranges::stable_sort(points, {}, [](const auto& point) { return point.first; });
        auto& shape = feed.shapes[id];
        for (const auto& [order, degrees] : points) {
            shape.push_back(degrees);
        }
    }
}

}  // namespace

Feed readFeed(const FeedFiles& files) {
    Feed feed;
    const Places stops = readStops(files, feed);
    const Places routes = readRoutes(files, feed);
    readCalendar(files, feed);
    const Places trips = readTrips(files, routes, feed);
    readTimes(files, trips, stops, feed);
    readShapes(files, feed);
    return feed;
}

}  // namespace tools::district::transit
