#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace runsearch {

/// What the planner looks for in the run log, as typed. A filter counts when something is left of
/// it after trimming.
struct RunLogFilters {
    std::string runId = {};         ///< a run's id or its beginning, wildcards included
    std::string activityCode = {};  ///< a whole number
    std::string begDate = {};       ///< the first day
    std::string endDate = {};       ///< the last day, which counts as a whole
};

/// A filter that cannot be searched for, and what the planner is told of it.
struct RunLogFault {
    enum class Filter { ActivityCode, BegDate, EndDate } filter;
    std::string title;
    std::string text;
};
/// The first filter that is no whole number or no day; nothing where all are good.
[[nodiscard]] std::optional<RunLogFault> firstFault(const RunLogFilters& filters);

/// The entries that meet every filter, newest first. The filters go into the question as typed.
[[nodiscard]] std::string runLogQuery(const RunLogFilters& filters);

/// Keys from `from` up to, but without, `end`.
struct KeyRange {
    std::int64_t from;
    std::int64_t end;
};
/// How many entries meet every filter, as TOTAL; those with a key in the range where one is given.
[[nodiscard]] std::string runLogCountQuery(const RunLogFilters& filters,
                                           const std::optional<KeyRange>& keys = {});

}  // namespace runsearch
