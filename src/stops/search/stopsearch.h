#pragma once

#include <string>

namespace stops {

/// A criterion that asks for one side, the other, or neither.
enum class Either { Any, Yes, No };

/// What the planner is looking for. A text is filled when something is left of it after trimming;
/// it goes into the query as typed, quotes and wildcards included.
struct StopSearchCriteria {
    std::string stopId = {};       ///< begins with
    std::string description = {};  ///< begins with
    std::string address = {};      ///< begins with
    std::string zip = {};
    std::string location = {};
    std::string school = {};
    std::string stopType = {};
    /// Has a place on the map; with both co-ordinates 0 (or missing) a stop has none.
    Either geocoded = Either::Any;
    /// A trip-type record is active when it and its stop are.
    Either active = Either::Any;
    /// No passenger is counted and no student assigned: to the stop, or to the trip-type record.
    bool withoutStudents = false;

    /// Finds trip-type records, each with its stop, instead of stops.
    bool tripTypes = false;
    // For trip-type records only:
    std::string tripType = {};
    std::string run = {};
    /// On no run: the record's run is Null, empty or blank.
    bool unassigned = false;
};

/// The question for stops, or for trip-type records where the criteria ask for these. Without any
/// criterion it finds all. Rows come as the database gives them.
[[nodiscard]] std::string stopSearchQuery(const StopSearchCriteria& criteria);

}  // namespace stops
