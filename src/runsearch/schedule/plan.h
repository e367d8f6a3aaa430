#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"

/// The run schedule: the searched runs over the day, by route or by school.
namespace schedule {

/// Seconds since midnight; what lies after the next midnight has more than a day's.
using Seconds = std::int32_t;
constexpr Seconds Minute = 60;
constexpr Seconds Hour = 60 * Minute;
constexpr Seconds Day = 24 * Hour;

constexpr int None = -1;

/// A weekday a bit, Monday the lowest.
using Days = std::uint8_t;
constexpr Days AllDays = 0x1F;

/// How full the buses of a run may be; each vehicle type has seats for each.
enum class SeatLevel : std::uint8_t { High, Medium, Low, Unknown };

/// One leg without riders.
struct EmptyTrip {
    std::optional<Seconds> time;  ///< nothing where it was not or could not be calculated
    double miles = 0;
};

/// One run as the search found it. Routes, schools and the like are places in the lists of the
/// Plan.
struct ScheduledRun {
    std::string id;
    std::string description;
    int route = None;
    int school = 0;
    int tripType = 0;
    int location = 0;
    int vehicleType = 0;  ///< the route's vehicle's where it has one, else the run's own
    int ownVehicleType = 0;
    SeatLevel seatLevel = SeatLevel::Medium;
    std::optional<Seconds> start;
    std::optional<Seconds> end;  ///< never before the start: a run past midnight ends after Day
    std::optional<Seconds> bell;
    bool lacksStart = false;  ///< one of them stands in for the other, which is not stored
    bool lacksEnd = false;
    EmptyTrip before;
    EmptyTrip after;
    int stops = 0;
    int students = 0;
    double miles = 0;
    int seats = 0;               ///< 0 where the vehicle type does not say
    std::int32_t firstStop = 0;  ///< internal ids; 0 for none
    std::int32_t lastStop = 0;
    std::int64_t routeKey = 0;   ///< as stored: 0 for none, else it may be one that is gone
    std::int64_t changedAt = 0;  ///< when it was last changed, as a base::Date; 0 for never
    Days days = 0;
    bool isPickUp = false;
    bool fromGarage = false;  ///< the bus comes out of the garage for it
    bool toGarage = false;    ///< the bus goes back to the garage after it
    bool needsMap = false;
    bool hasWarnings = false;
};

struct Route {
    std::int64_t key = 0;
    std::string id;
    std::string vehicle;  ///< blank for none
    std::string driverKey;
    std::string driver;
    std::int32_t garage = 0;  ///< the stop's internal id; 0 for none
    int vehicleType = None;   ///< of its vehicle; None where it has none or it is not known
};

/// A code and what planners call it.
struct Named {
    std::string code;  ///< blank for "none"
    std::string name;
};

struct School : Named {
    int type = 0;
};

/// A part of the day with a name, from its start up to its end.
struct TimeZone {
    std::string name;
    Seconds start = 0;
    Seconds end = 0;  ///< after the start, beyond Day where it passes midnight

    friend bool operator==(const TimeZone&, const TimeZone&) = default;
};

/// The runs of one search and all that the schedule says of them.
struct Plan {
    std::string district;
    double backToGarageGap = 0;  ///< minutes of idle time that are spent in the garage
    std::vector<ScheduledRun> runs;
    std::vector<Route> routes;  ///< those that have runs
    std::vector<School> schools;
    std::vector<Named> schoolTypes;
    std::vector<Named> tripTypes;
    std::vector<Named> locations;
    std::vector<Named> vehicleTypes;
    std::vector<std::array<int, 3>> seats;  ///< by vehicle type and SeatLevel
    std::vector<TimeZone> zones;            ///< by start, then end

    [[nodiscard]] const ScheduledRun& run(int place) const {
        return runs[static_cast<std::size_t>(place)];
    }
    [[nodiscard]] const School& school(int place) const {
        return schools[static_cast<std::size_t>(place)];
    }
    [[nodiscard]] const Route& route(int place) const {
        return routes[static_cast<std::size_t>(place)];
    }
    /// 0 where the type has no such level.
    [[nodiscard]] int seatsOf(int vehicleType, SeatLevel level) const;
    /// Puts a run on a route, or on None; vehicle type and seats become those that it has there.
    void putOnRoute(ScheduledRun& run, int route) const;
    /// The run's route; null where it is on none.
    [[nodiscard]] const Route* routeOf(const ScheduledRun& of) const {
        return of.route == None ? nullptr : &route(of.route);
    }
};

/// Reads the runs that the statement finds; it is the search's that joins SCHOOL, and a blank one
/// finds nothing. Raises jet::SqlError, store::StoreError.
[[nodiscard]] Plan readPlan(ado::Connection& routing, const std::string& runSearchSchoolSql);

/// The zone that a time lies in, by its place; None between zones.
[[nodiscard]] int zoneAt(const std::vector<TimeZone>& zones, Seconds time);

/// Whether a text comes before another one as planners order route numbers: "9" before "10".
[[nodiscard]] bool naturalLess(std::string_view a, std::string_view b);

}  // namespace schedule
