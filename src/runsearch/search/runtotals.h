#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/table/texttable.h"

namespace runsearch {

struct RunTotals {
    std::int64_t students = 0;
    double miles = 0;
    double minutes = 0;
};

/// Of some rows of the table that readRuns() gives.
[[nodiscard]] RunTotals totalsOf(const table::TextTable& runs, std::span<const std::size_t> rows);

/// "1,204 students, 96.41 miles, 381.05 minutes"
[[nodiscard]] std::string inWords(const RunTotals& totals);

}  // namespace runsearch
