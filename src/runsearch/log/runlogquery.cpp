#include "runsearch/log/runlogquery.h"

#include <charconv>
#include <string_view>

#include <fmt/format.h>

#include "platform/base/datetext.h"
#include "platform/base/text.h"

namespace runsearch {

namespace {

bool isWholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

/// The filters' conditions with " Where " before them; empty without any.
class Conditions {
public:
    explicit Conditions(const RunLogFilters& filters) {
        add(" RunLOG.RunID LIKE '{}%'", filters.runId);
        add(" RunLOG.ACTIVITYCODE = {}", filters.activityCode);
        add(" DateValue(CStr([LOGDATE]))>=#{}#", filters.begDate);
        add(" DateValue(CStr([LOGDATE]))<=#{}#", filters.endDate);
    }

    void append(std::string_view fragment) {
        if (!body_.empty()) {
            body_ = fmt::format("{} AND", base::trim(body_));
        }
        body_ += fragment;
    }

    [[nodiscard]] std::string text() const { return body_.empty() ? body_ : " Where " + body_; }

private:
    void add(std::string_view fragment, std::string_view filter) {
        if (const auto value = base::trim(filter); !value.empty()) {
            append(fmt::format(fmt::runtime(fragment), value));
        }
    }

    std::string body_;
};

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

std::string runLogQuery(const RunLogFilters& filters) {
    return fmt::format("Select RUNLOG.* FROM RUNLOG{} ORDER BY RUNLOG.LOGDATE DESC",
                       Conditions(filters).text());
}

std::string runLogCountQuery(const RunLogFilters& filters, const std::optional<KeyRange>& keys) {
    Conditions conditions(filters);
    if (keys) {
        conditions.append(
            fmt::format(" RunLOG.ID >= {} AND RunLOG.ID < {}", keys->from, keys->end));
    }
    return fmt::format("Select Count(*) AS TOTAL FROM RUNLOG{}", conditions.text());
}

}  // namespace runsearch
