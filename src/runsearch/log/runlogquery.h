#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/base/date.h"

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

/// Where reading goes on: behind an entry of that time and key, newest first. Entries without a
/// time stand last, and those of one time by their keys.
struct RunLogPlace {
    enum class Stretch {
        WholeLog,    ///< from the newest entry on
        SameTime,    ///< what has the last entry's time
        Earlier,     ///< what is before that time
        WithoutTime  ///< what has none
    } stretch = Stretch::WholeLog;
    base::Date time = {};
    std::int64_t key = 0;  ///< keys are below it
};

/// Which index leads to the entries of a run: its own, whose entries must then be sorted by time,
/// or that of the times, whose entries must then be looked through for the run.
enum class RunLogWay { ByRun, ByTime };

/// The next entries that meet every filter, newest first, at most so many, from one stretch of the
/// log. The filters go into the question as typed.
[[nodiscard]] std::string runLogPageQuery(const RunLogFilters& filters, RunLogWay way,
                                          const RunLogPlace& place, std::size_t most);

/// Keys from `from` up to, but without, `end`.
struct KeyRange {
    std::int64_t from;
    std::int64_t end;
};
/// How many entries meet every filter, as TOTAL; those with a key in the range where one is given,
/// which is then what leads to them.
[[nodiscard]] std::string runLogCountQuery(const RunLogFilters& filters,
                                           const std::optional<KeyRange>& keys = {});

}  // namespace runsearch
