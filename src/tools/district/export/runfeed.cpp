#include "tools/district/export/runfeed.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include <fmt/format.h>

#include "platform/base/date.h"
#include "platform/base/text.h"

namespace tools::district {

namespace {

using base::Date;
using feed::Boarding;
using feed::StopTime;
using feed::Trip;

constexpr std::int64_t HalfDay = Date::SecondsPerDay / 2;

/// Whether the map knows where a stop is.
constexpr std::string_view Placed = "(XPOS <> 0 OR YPOS <> 0)";

std::string keyOf(std::string_view code) { return base::lowered(base::trimRight(code)); }

std::string firstOf(std::initializer_list<std::string_view> texts) {
    for (const std::string_view text : texts) {
        if (!base::trim(text).empty()) {
            return std::string(base::trim(text));
        }
    }
    return {};
}

Boarding boardingAt(std::string_view stopType, bool toSchool) {
    const bool isSchool = base::equalsNoCase(stopType, data::stoptype::School);
    const bool isRegular = base::equalsNoCase(stopType, data::stoptype::Regular);
    if (!isSchool && !isRegular) {
        return Boarding::Both;
    }
    return isSchool == toSchool ? Boarding::OnlyOff : Boarding::OnlyOn;
}

/// Seconds of the day of a stored time; past midnight where it is on the day after.
std::optional<std::int64_t> secondsIn(const store::Statement& row, int column) {
    if (row.type(column) == store::CellType::Null) {
        return std::nullopt;
    }
    const auto time = Date::fromIso(row.text(column));
    const bool isNear = time && time->seconds >= 0 && time->seconds < 2 * Date::SecondsPerDay;
    return !time ? std::nullopt : std::optional(isNear ? time->seconds : time->timeValue().seconds);
}

/// Why a run cannot be a trip; empty where it can.
std::string faultOf(const Trip& trip) {
    if (std::ranges::find(trip.days, true) == trip.days.end()) {
        return "it runs on no weekday";
    }
    if (trip.times.size() < 2) {
        return "fewer than two of its stops are on the map";
    }
    if (!trip.times.front().arrival || !trip.times.back().arrival) {
        return "its first or last stop has no time";
    }
    std::int64_t last = 0;
    for (const StopTime& time : trip.times) {
        if (time.arrival && *time.arrival < last) {
            return "its times go back";
        }
        last = time.arrival.value_or(last);
    }
    return {};
}

/// A time far before the one before it is of the next day.
void goOnPastMidnight(Trip& trip) {
    std::int64_t last = 0;
    for (StopTime& time : trip.times) {
        if (time.arrival && *time.arrival + HalfDay < last) {
            *time.arrival += Date::SecondsPerDay;
        }
        last = time.arrival.value_or(last);
    }
}

/// From load seconds, kept in `departure` until here: nobody leaves after the next arrival.
void findDepartures(Trip& trip) {
    std::optional<std::int64_t> next;
    for (std::size_t i = trip.times.size(); i-- > 0;) {
        auto& time = trip.times[i];
        if (time.arrival) {
            const std::int64_t leaves = *time.arrival + time.departure.value_or(0);
            time.departure = next ? std::min(leaves, *next) : leaves;
            next = time.arrival;
        } else {
            time.departure.reset();
        }
    }
}

bool overlap(const Trip& earlier, const Trip& later) {
    for (std::size_t i = 0; i < earlier.days.size(); ++i) {
        if (earlier.days[i] && later.days[i] &&
            *later.times.front().arrival < *earlier.times.back().departure) {
            return true;
        }
    }
    return false;
}

/// Reads the tables that a feed comes from.
class Reader {
public:
    Reader(store::Database& routing, const geo::Projection& projection)
        : routing_(routing), projection_(projection) {}

    RunFeed read() {
        readName();
        readRuns();
        readTimes();
        readRoutes();
        finishTrips();
        readStops();
        return std::move(result_);
    }

private:
    void readName() {
        const auto row = routing_.prepare("SELECT DistName FROM District");
        result_.feed.agency.name =
            row->step() ? firstOf({row->text(0), "School district"}) : "School district";
    }

    void readRuns() {
        const auto row = routing_.prepare(
            "SELECT R.RUN, R.DESCRIPTION, R.INT_ROUTEID, R.PICKUP, S.SCHOOLNAME, R.monday,"
            " R.tuesday, R.wednesday, R.thursday, R.friday FROM RUN AS R"
            " LEFT JOIN SCHOOL AS S ON S.SCHOOL = R.SCHOOL WHERE R.ACTIVE <> FALSE ORDER BY R.RUN");
        constexpr int Monday = 5;
        while (row->step()) {
            Trip trip{.id = std::string(row->text(0)), .route = {}, .headsign = {}, .times = {}};
            const std::int64_t route = row->integer(2);
            trip.route = route == 0 ? "run " + trip.id : std::to_string(route);
            trip.toSchool = row->integer(3) == 1;
            trip.headsign = trip.toSchool ? firstOf({row->text(4), row->text(1)})
                                          : firstOf({row->text(1), row->text(4)});
            for (std::size_t day = 0; day < trip.days.size(); ++day) {
                trip.days[day] = row->integer(Monday + static_cast<int>(day)) == 1;
            }
            trips_.emplace(keyOf(trip.id), std::move(trip));
        }
    }

    void readTimes() {
        constexpr double Minute = 60;
        const auto row = routing_.prepare(fmt::format(
            "SELECT T.RUN, T.INT_STOPID, T.TIME_AT_STOP, T.LOAD_TIME, S.STOPTYPE"
            " FROM STOP_TRIPTYPE AS T INNER JOIN STOP AS S ON S.INT_STOPID = T.INT_STOPID"
            " WHERE T.RUN NOT IN ('', ' ') AND S.STOPTYPE NOT IN ('{}', '{}') AND {}"
            " ORDER BY T.RUN, T.RUNSEQ, T.ID",
            data::stoptype::Directional, data::stoptype::Garage, Placed));
        while (row->step()) {
            const auto trip = trips_.find(keyOf(row->text(0)));
            if (trip != trips_.end()) {
                trip->second.times.push_back(
                    {.stop = row->integer(1),
                     .arrival = secondsIn(*row, 2),
                     .departure = std::llround(row->real(3) * Minute),
                     .boarding = boardingAt(row->text(4), trip->second.toSchool)});
            }
        }
    }

    void readRoutes() {
        const auto row = routing_.prepare("SELECT INT_ROUTEID, ROUTEID, ROUTENAME FROM ROUTE");
        while (row->step()) {
            const std::string id = std::to_string(row->integer(0));
            const std::string name = firstOf({row->text(1), id});
            const std::string longName = firstOf({row->text(2)});
            routes_[id] = {id, name, longName == name ? "" : longName};
        }
    }

    void finishTrips() {
        for (auto& [key, trip] : trips_) {
            goOnPastMidnight(trip);
            if (const std::string fault = faultOf(trip); !fault.empty()) {
                result_.leftOut.emplace_back(trip.id, fault);
                continue;
            }
            findDepartures(trip);
            result_.feed.trips.push_back(std::move(trip));
        }
        findBlocks();
        std::set<std::string> used;
        for (const Trip& trip : result_.feed.trips) {
            if (used.insert(trip.route).second) {
                const auto found = routes_.find(trip.route);
                result_.feed.routes.push_back(found == routes_.end()
                                                  ? feed::Route{trip.route, trip.id, trip.headsign}
                                                  : found->second);
            }
        }
    }

    /// A bus drives the runs of a route one after the other.
    void findBlocks() {
        std::map<std::string, std::vector<Trip*>> byRoute;
        for (Trip& trip : result_.feed.trips) {
            byRoute[trip.route].push_back(&trip);
        }
        for (auto& [route, trips] : byRoute) {
            std::ranges::sort(trips, {},
                              [](const Trip* trip) { return *trip->times.front().arrival; });
            bool isBlock = routes_.contains(route);
            for (std::size_t i = 0; i < trips.size(); ++i) {
                for (std::size_t j = 0; j < i; ++j) {
                    isBlock = isBlock && !overlap(*trips[j], *trips[i]);
                }
            }
            for (Trip* trip : trips) {
                trip->block = isBlock ? route : "";
            }
        }
    }

    void readStops() {
        std::set<std::int64_t> used;
        for (const Trip& trip : result_.feed.trips) {
            for (const StopTime& time : trip.times) {
                used.insert(time.stop);
            }
        }
        const auto row = routing_.prepare(
            "SELECT INT_STOPID, STOPID, DESCRIPTION, ADDR1, XPOS, YPOS FROM STOP"
            " ORDER BY INT_STOPID");
        while (row->step()) {
            if (used.contains(row->integer(0))) {
                result_.feed.stops.push_back(
                    {.id = row->integer(0),
                     .code = firstOf({row->text(1)}),
                     .name = firstOf({row->text(2), row->text(3), row->text(1), "Stop"}),
                     .at = projection_.toDegrees({row->real(4), row->real(5)})});
            }
        }
    }

    store::Database& routing_;
    const geo::Projection& projection_;
    std::map<std::string, Trip> trips_;  ///< by run, in lower case
    std::map<std::string, feed::Route> routes_;
    RunFeed result_;
};

}  // namespace

geo::Feet middleOfStops(store::Database& routing) {
    const auto row = routing.prepare(fmt::format(
        "SELECT MIN(XPOS), MAX(XPOS), MIN(YPOS), MAX(YPOS) FROM STOP WHERE {}", Placed));
    row->step();
    return {std::round((row->real(0) + row->real(1)) / 2),
            std::round((row->real(2) + row->real(3)) / 2)};
}

RunFeed feedOfRuns(const DistrictSnapshot& district, const geo::Projection& projection) {
    return Reader(district.database(data::DatabaseFile::Routing), projection).read();
}

}  // namespace tools::district
