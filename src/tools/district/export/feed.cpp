#include "tools/district/export/feed.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>

#include <fmt/format.h>

#include "platform/base/notcopied.h"
#include "platform/table/csv.h"
#include "tools/district/base/refuse.h"

namespace tools::district::feed {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view AgencyId = "district";
constexpr std::string_view Bus = "3";

/// One file of a feed: the names of its columns, then rows of as many cells.
class FeedFile : private base::NotCopied {
public:
    FeedFile(const fs::path& folder, const std::string& name,
             std::initializer_list<std::string_view> columns)
        : path_(folder / name), out_(path_, std::ios::binary), csv_(out_) {
        for (const std::string_view column : columns) {
            csv_.text(column);
        }
        csv_.endRow();
    }
    ~FeedFile() = default;

    template <class... Cells>
    void row(const Cells&... cells) {
        (cell(cells), ...);
        csv_.endRow();
    }
    void finish() {
        if (!out_.flush()) {
            refuse(fmt::format("{} cannot be written: {}.", path_.string(), std::strerror(errno)));
        }
    }

private:
    /// A feed knows no empty text, and no line end inside one.
    void cell(std::string_view text) {
        std::string line;
        for (const char c : text) {
            line += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
        line.empty() ? csv_.null() : csv_.text(line);
    }
    void cell(std::int64_t number) { csv_.text(std::to_string(number)); }

    fs::path path_;
    std::ofstream out_;
    table::CsvWriter csv_;
};

std::string dayOf(base::Date date) {
    const std::string iso = date.iso();
    return iso.substr(0, 4) + iso.substr(5, 2) + iso.substr(8, 2);
}

std::string timeOf(std::optional<std::int64_t> seconds) {
    constexpr std::int64_t Minute = 60;
    constexpr std::int64_t Hour = 3600;
    return seconds ? fmt::format("{:02}:{:02}:{:02}", *seconds / Hour, *seconds % Hour / Minute,
                                 *seconds % Minute)
                   : std::string();
}

/// "Mon-Tue-Fri"
std::string serviceOf(const Days& days) {
    constexpr std::array Names{"Mon", "Tue", "Wed", "Thu", "Fri"};
    std::string name;
    for (std::size_t i = 0; i < days.size(); ++i) {
        name += !days[i] ? "" : (name.empty() ? "" : "-") + std::string(Names[i]);
    }
    return name;
}

std::int64_t flag(bool value) { return value ? 1 : 0; }

void writeCalendar(const Feed& feed, const fs::path& folder) {
    std::map<std::string, Days> services;
    for (const Trip& trip : feed.trips) {
        services[serviceOf(trip.days)] = trip.days;
    }
    FeedFile file(folder, "calendar.txt",
                  {"service_id", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday",
                   "sunday", "start_date", "end_date"});
    for (const auto& [name, days] : services) {
        file.row(name, flag(days[0]), flag(days[1]), flag(days[2]), flag(days[3]), flag(days[4]),
                 flag(false), flag(false), dayOf(feed.from), dayOf(feed.until));
    }
    file.finish();
}

void writeTimes(const Feed& feed, const fs::path& folder) {
    FeedFile file(folder, "stop_times.txt",
                  {"trip_id", "arrival_time", "departure_time", "stop_id", "stop_sequence",
                   "pickup_type", "drop_off_type", "timepoint"});
    for (const Trip& trip : feed.trips) {
        std::int64_t sequence = 0;
        for (const StopTime& time : trip.times) {
            file.row(trip.id, timeOf(time.arrival), timeOf(time.departure), time.stop, ++sequence,
                     flag(time.boarding == Boarding::OnlyOff),
                     flag(time.boarding == Boarding::OnlyOn), flag(time.arrival.has_value()));
        }
    }
    file.finish();
}

void writeTrips(const Feed& feed, const fs::path& folder) {
    FeedFile file(
        folder, "trips.txt",
        {"route_id", "service_id", "trip_id", "trip_headsign", "direction_id", "block_id"});
    for (const Trip& trip : feed.trips) {
        file.row(trip.route, serviceOf(trip.days), trip.id, trip.headsign, flag(!trip.toSchool),
                 trip.block);
    }
    file.finish();
}

}  // namespace

void write(const Feed& feed, const fs::path& folder) {
    FeedFile agency(folder, "agency.txt",
                    {"agency_id", "agency_name", "agency_url", "agency_timezone"});
    agency.row(AgencyId, feed.agency.name, feed.agency.url, feed.agency.timezone);
    agency.finish();
    FeedFile info(folder, "feed_info.txt",
                  {"feed_publisher_name", "feed_publisher_url", "feed_lang", "feed_start_date",
                   "feed_end_date"});
    info.row(feed.agency.name, feed.agency.url, "en", dayOf(feed.from), dayOf(feed.until));
    info.finish();
    FeedFile stops(folder, "stops.txt",
                   {"stop_id", "stop_code", "stop_name", "stop_lat", "stop_lon"});
    for (const Stop& stop : feed.stops) {
        stops.row(stop.id, stop.code, stop.name, fmt::format("{:.7f}", stop.at.latitude),
                  fmt::format("{:.7f}", stop.at.longitude));
    }
    stops.finish();
    FeedFile routes(folder, "routes.txt",
                    {"route_id", "agency_id", "route_short_name", "route_long_name", "route_type"});
    for (const Route& route : feed.routes) {
        routes.row(route.id, AgencyId, route.shortName, route.longName, Bus);
    }
    routes.finish();
    writeTrips(feed, folder);
    writeTimes(feed, folder);
    writeCalendar(feed, folder);
}

}  // namespace tools::district::feed
