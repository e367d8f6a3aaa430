#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/base/date.h"

namespace runsearch {

/// A range of times of day; either end may be missing.
struct TimeRange {
    std::optional<base::Date> from;
    std::optional<base::Date> to;
};

/// One row of the school list.
struct SchoolRow {
    std::string code;
    std::string schoolType;
    bool selected = false;
    std::string name = {};
};

/// What the planner is looking for. A text is filled when something is left of it after trimming;
/// it goes into the query as typed, quotes and wildcards included.
struct RunSearchCriteria {
    std::string runId;
    std::string description;
    TimeRange startTime;
    TimeRange endTime;
    TimeRange bellTime;
    std::string runFamily;
    /// Every listed school in list order: the school type picks from them, too.
    std::vector<SchoolRow> schools;
    /// Schools are those of the run's school stops instead of the run's own.
    bool searchSchoolStops = false;
    /// The selected trip types in list order.
    std::vector<std::string> tripTypes;
    /// Trip types are those of the run's stops instead of the run's own.
    bool searchTripTypeStops = false;
    std::string schoolType;
    bool needsResolve = false;
    std::string location;
    bool useRoute = false;
    std::string driver;
    std::string vehicle;
    std::string aid;
    std::string route;
    bool notOnRoute = false;
};

/// The texts of one search.
struct RunSearchQuery {
    std::string runs;  ///< fills the list
    std::string
        runsSchool;  ///< the same runs, joined with routes, staff and schools whatever is shown
};

/// The query for the criteria. Nothing where a school type is asked for that no listed school has.
[[nodiscard]] std::optional<RunSearchQuery> runSearchQuery(const RunSearchCriteria& criteria);

/// How many criteria are filled, counted as the planner sees them (a range is one, the selected
/// schools are one), by the subject they belong to. The switches that only say where to look count
/// nothing.
struct FilledCriteria {
    int run = 0;
    int school = 0;
    int route = 0;
};
[[nodiscard]] FilledCriteria filledCriteria(const RunSearchCriteria& criteria);

}  // namespace runsearch
