#include "runsearch/search/runtotals.h"

#include <fmt/format.h>

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

std::string grouped(std::int64_t number) {
    std::string text = std::to_string(number);
    for (auto at = static_cast<int>(text.size()) - 3; at > (number < 0 ? 1 : 0); at -= 3) {
        text.insert(static_cast<std::size_t>(at), ",");
    }
    return text;
}

}  // namespace

RunTotals totalsOf(const table::TextTable& runs, std::span<const std::size_t> rows) {
    return {.students = static_cast<std::int64_t>(sumOf(runs, rows, "Total_Students")),
            .miles = sumOf(runs, rows, "total_miles"),
            .minutes = sumOf(runs, rows, "total_time")};
}

std::string inWords(const RunTotals& totals) {
    return fmt::format("{} students, {:.2f} miles, {:.2f} minutes", grouped(totals.students),
                       totals.miles, totals.minutes);
}

}  // namespace runsearch
