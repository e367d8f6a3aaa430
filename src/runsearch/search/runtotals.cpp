#include "runsearch/search/runtotals.h"

#include <fmt/format.h>

#include "platform/base/numbertext.h"

namespace runsearch {

namespace {

double sumOf(const table::TextTable& runs, std::span<const std::size_t> rows,
             std::string_view name) {
    const std::size_t column = runs.columnOf(name);
    double sum = 0;
    for (const std::size_t row : rows) {
        const auto value = runs.value(row, column);
        sum += value.isNull() ? 0 : value.asNumber();
    }
    return sum;
}

}  // namespace

RunTotals totalsOf(const table::TextTable& runs, std::span<const std::size_t> rows) {
    return {.students = static_cast<std::int64_t>(sumOf(runs, rows, "Total_Students")),
            .miles = sumOf(runs, rows, "total_miles"),
            .minutes = sumOf(runs, rows, "total_time")};
}

std::string inWords(const RunTotals& totals) {
    return fmt::format("{} students, {} miles, {} minutes",
                       base::grouped(static_cast<double>(totals.students), 0),
                       base::grouped(totals.miles, 2), base::grouped(totals.minutes, 2));
}

}  // namespace runsearch
