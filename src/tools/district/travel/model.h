#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/date.h"
#include "tools/district/travel/travel.h"

namespace tools::district {

/// Who made a row and who changed it last.
struct Audit {
    std::string createdBy = "R.T.E.";
    base::Date created = {};
    std::string changedBy = "R.T.E.";
    base::Date changed = {};
};

struct School {
    std::string code = {};
    std::string name = {};
    std::string type = {};
    base::Date bell = {};       ///< classes begin
    base::Date dismissal = {};  ///< classes end
    std::int64_t stop = 0;
    Point at = {};
    bool active = true;
};

struct Stop {
    std::int64_t id = 0;
    std::string stopId = {};
    std::string_view type = {};
    std::string description = {};
    std::string address = {};
    std::string school = {};
    std::string location = {};
    Point at = {};
    bool placed = true;  ///< false: the map does not know where it is
    bool active = true;
    bool rightSide = false;
    std::string comment = {};
};

/// Where a stop-trip row stands when it is on no run.
enum class NoRun { Null, Empty, Blank };

/// A stop's use for one trip type, on a run or on none.
struct Visit {
    const Stop* stop = nullptr;
    int sequence = 0;
    int students = 0;
    double loadMinutes = 0;
    double driveMinutes = 0;  ///< from the stop before
    double miles = 0;         ///< from the stop before
    std::optional<base::Date> time = {};
    double cumulatedMinutes = 0;
    double cumulatedMiles = 0;
    bool rightHand = true;
    bool active = true;
};

/// A visit on no run.
struct LooseVisit {
    Visit visit;
    std::string_view tripType = {};
    NoRun noRun = NoRun::Blank;
};

/// A breach of the district's rules as a validation would record it.
struct Finding {
    std::string_view type = {};
    std::string text = {};
};

struct Run {
    std::string id = {};
    std::string description = {};
    bool active = true;
    std::string school = {};
    std::string_view tripType = {};
    std::string family = {};
    std::string location = {};
    std::optional<std::int64_t> route = {};
    std::string vehicleType = {};
    std::string_view capacity = "High";
    int overfill = 0;
    base::Date bell = {};
    bool pickup = true;
    base::Date start = {};
    base::Date end = {};
    double totalMinutes = 0;
    double totalMiles = 0;
    int students = 0;
    std::string comment = {};
    bool regenerate = false;
    bool fridays = true;
    std::vector<Visit> visits = {};
    std::vector<Finding> findings = {};
    Audit audit = {};

    /// The timed visits' ends: directional stops do not count. 0 without any.
    [[nodiscard]] std::int64_t firstStop() const;
    [[nodiscard]] std::int64_t lastStop() const;
    [[nodiscard]] int timedStops() const;
};

struct Student {
    std::int64_t id = 0;
    std::string lastName = {};
    std::string firstName = {};
    const School* school = nullptr;
    const Stop* stop = nullptr;  ///< in the morning and in the afternoon
    std::vector<std::string_view> needs = {};
};

struct Vehicle {
    std::string id = {};
    std::string description = {};
    std::string type = {};
};

struct Employee {
    std::int64_t number = 0;
    std::string lastName = {};
    std::string firstName = {};
};

struct Route {
    std::int64_t id = 0;
    std::string routeId = {};
    std::string name = {};
    std::string location = {};
    std::string vehicle = {};
    std::optional<std::int64_t> driver = {};
    std::optional<std::int64_t> aide = {};
    std::int64_t garage = 0;
    std::string comment = {};
};

/// Travel between two end points, either way.
struct Travel {
    std::int64_t from = 0;
    std::int64_t to = 0;
    double minutes = 0;
    double miles = 0;
};

/// A whole district in memory. Stops and schools are held behind pointers, because visits and
/// students point at them.
struct District {
    std::string name = {};
    int maxRideMinutes = 60;
    int backToGarageMinutes = 60;
    double runCost = 0;
    base::Date asOf;  ///< when the data were made
    std::vector<std::unique_ptr<School>> schools;
    std::vector<std::unique_ptr<Stop>> stops;
    std::vector<Run> runs;
    std::vector<LooseVisit> loose;
    std::vector<Student> students;
    std::vector<Vehicle> vehicles;
    std::vector<Employee> employees;
    std::vector<Route> routes;
    std::vector<Travel> travels;
    std::int64_t logEntries = 0;
    std::uint64_t seed = 0;
    /// Licence of data that others published; empty where everything is invented.
    std::string_view licence = {};
};

}  // namespace tools::district
