#include "runsearch/log/runlogquery.h"

#include <charconv>
#include <string_view>

#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "platform/base/datetext.h"
#include "platform/base/text.h"

namespace runsearch {

namespace {

bool isWholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

/// A run id with something behind it is no column, which keeps its index out.
ado::Conditions conditionsOf(const RunLogFilters& filters, RunLogWay way = RunLogWay::ByRun) {
    ado::Conditions where;
    if (way == RunLogWay::ByRun) {
        where.addFilled(" RunLOG.RunID LIKE '{}%'", filters.runId);
    } else {
        where.addFilled(" (RunLOG.RunID & '') LIKE '{}%'", filters.runId);
    }
    where.addFilled(" RunLOG.ACTIVITYCODE = {}", filters.activityCode);
    where.addFilled(" DateValue(CStr([LOGDATE]))>=#{}#", filters.begDate);
    where.addFilled(" DateValue(CStr([LOGDATE]))<=#{}#", filters.endDate);
    return where;
}

void goOn(ado::Conditions& where, const RunLogPlace& place) {
    switch (place.stretch) {
        case RunLogPlace::Stretch::WholeLog:
            return;
        case RunLogPlace::Stretch::SameTime:
            return where.add(fmt::format(" RUNLOG.LOGDATE = #{}# AND RUNLOG.ID < {}",
                                         place.time.iso(), place.key));
        case RunLogPlace::Stretch::Earlier:
            return where.add(fmt::format(" RUNLOG.LOGDATE < #{}#", place.time.iso()));
        case RunLogPlace::Stretch::WithoutTime:
            return where.add(fmt::format(" RUNLOG.LOGDATE Is Null AND RUNLOG.ID < {}", place.key));
    }
}

}  // namespace

std::optional<RunLogFault> firstFault(const RunLogFilters& filters) {
    using Filter = RunLogFault::Filter;
    const auto code = base::trim(filters.activityCode);
    if (!code.empty() && !isWholeNumber(code)) {
        return RunLogFault{Filter::ActivityCode, "Invalid Activity Code",
                           fmt::format("Oops, \"{}\" is not an activity code.  Please choose one "
                                       "from the list or enter its number and try again.",
                                       code)};
    }
    for (const auto filter : {Filter::BegDate, Filter::EndDate}) {
        const auto day = base::trim(filter == Filter::BegDate ? filters.begDate : filters.endDate);
        if (!day.empty() && !base::typedDay(day)) {
            return RunLogFault{filter, "Invalid Date",
                               fmt::format("Oops, \"{}\" is not a date.  Please enter a date such "
                                           "as 1/31/2026 and try again.",
                                           day)};
        }
    }
    return std::nullopt;
}

std::string runLogPageQuery(const RunLogFilters& filters, RunLogWay way, const RunLogPlace& place,
                            std::size_t most) {
    auto where = conditionsOf(filters, way);
    goOn(where, place);
    return fmt::format(
        "Select TOP {} RUNLOG.* FROM RUNLOG{}{} ORDER BY RUNLOG.LOGDATE DESC, RUNLOG.ID DESC", most,
        where.keyword(), where.text());
}

std::string runLogCountQuery(const RunLogFilters& filters, const std::optional<KeyRange>& keys) {
    auto where = conditionsOf(filters, keys ? RunLogWay::ByTime : RunLogWay::ByRun);
    if (keys) {
        where.add(fmt::format(" RunLOG.ID >= {} AND RunLOG.ID < {}", keys->from, keys->end));
    }
    return fmt::format("Select Count(*) AS TOTAL FROM RUNLOG{}{}", where.keyword(), where.text());
}

}  // namespace runsearch
