#include "runsearch/search/runtotals.h"

#include <fmt/format.h>

#include "platform/base/numbertext.h"

namespace runsearch {

std::string totalsInWords(const table::TextTable& runs, std::span<const std::size_t> rows) {
    const auto sum = [&](std::string_view name, int decimals) {
        const std::size_t column = runs.columnOf(name);
        double all = 0;
        for (const std::size_t row : rows) {
            const auto value = runs.value(row, column);
            all += value.isNull() ? 0 : value.asNumber();
        }
        return base::grouped(all, decimals);
    };
    return fmt::format("{} students, {} miles, {} minutes", sum("Total_Students", 0),
                       sum("total_miles", 2), sum("total_time", 2));
}

}  // namespace runsearch
