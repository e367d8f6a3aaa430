#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/base/date.h"
#include "platform/geo/projection.h"

/// Runs on the map: what is read of them, how they are drawn, and the window that shows them.
namespace map {

enum class StopKind { Stop, School, Garage, TurnPoint };

/// A stop's place on a run.
struct MappedStop {
    std::int64_t stopTripId = 0;
    std::int64_t intStopId = 0;
    std::string stopId = {};
    StopKind kind = StopKind::Stop;
    std::string name = {};  ///< its address, else its description, else its id
    geo::Feet at = {};
    bool isPlaced = false;  ///< the map knows where it is
    std::int64_t sequence = 0;
    int students = 0;
    int onTheBus = 0;                     ///< with whom the bus leaves it
    double loadMinutes = 0;               ///< what the bus stands there
    double legMinutes = 0;                ///< from the stop before
    double legMiles = 0;                  ///< from the stop before
    bool wantsRightSide = false;          ///< the door has to be on the stop's side of the street
    std::optional<base::Date> time = {};  ///< of day
};

/// Schools and garages keep their place in the order.
[[nodiscard]] bool isFixed(const MappedStop& stop);

/// A place that a run is about but does not stop at.
struct MappedPlace {
    std::string name = {};
    geo::Feet at = {};
};

struct RunFinding {
    std::string type = {};
    std::string text = {};
};

/// A run as the map shows it, with what is stored of it.
struct MappedRun {
    std::string id = {};
    std::string description = {};
    std::string school = {};  ///< its code
    std::string schoolName = {};
    std::string tripType = {};
    std::string vehicle = {};   ///< of its route; "" where none is known
    std::int64_t routeKey = 0;  ///< 0: on no route
    std::string routeId = {};
    std::optional<int> seats = {};
    bool isPickup = false;
    bool countsFromStart = false;  ///< its times, rather than from its end
    bool needsSolving = false;
    std::optional<base::Date> bell = {};
    std::optional<base::Date> start = {};
    std::optional<base::Date> end = {};
    double minutes = 0;
    double miles = 0;
    std::vector<MappedStop> stops = {};      ///< in the run's order, turn points included
    std::optional<MappedPlace> garage = {};  ///< of its route
    std::vector<RunFinding> findings = {};   ///< of the last validation

    /// Of the regular stops.
    [[nodiscard]] int passengers() const;
    /// Where a stop stands among those that are counted, from 1; 0 for one that has no number:
    /// schools, garages and turn points.
    [[nodiscard]] int numberOf(std::size_t stop) const;
    /// How many of its stops have a number.
    [[nodiscard]] int numberedStops() const;
};

/// "Run 31-2: Maple Grove from Hudson".
[[nodiscard]] std::string headingOf(const MappedRun& run);
/// "Maple Grove Elementary · AM · Bus 31 · bell 08:15 AM", as far as it is known.
[[nodiscard]] std::string subjectOf(const MappedRun& run);
/// "6 board": who boards or leaves there.
[[nodiscard]] std::string ridersAt(const MappedRun& run, const MappedStop& stop);
/// "Stop 4 of 10, North Broadway, 07:46 AM, north side, 4 board": the stop for those who do not see
/// the map; the side where it is known.
[[nodiscard]] std::string spokenStop(const MappedRun& run, std::size_t stop,
                                     const std::string& side = {});

/// The run with that id as it is stored now; nothing where there is none. Raises what the
/// connection raises.
[[nodiscard]] std::optional<MappedRun> readMappedRun(ado::Connection& routing,
                                                     const std::string& run);
/// The longest ride that the district allows, in minutes; 0 for none.
[[nodiscard]] double longestRide(ado::Connection& routing);
/// The runs of that run's school with its trip type, by id.
[[nodiscard]] std::vector<MappedRun> readRunsOfSchool(ado::Connection& routing,
                                                      const MappedRun& like);
/// The runs of a route in the order of the day; none for the route 0.
[[nodiscard]] std::vector<MappedRun> readRunsOfRoute(ado::Connection& routing,
                                                     std::int64_t routeKey);

}  // namespace map
