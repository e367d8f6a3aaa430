#pragma once

#include <span>
#include <string>

#include "platform/table/texttable.h"

namespace runsearch {

/// "1,204 students, 96.41 miles, 381.05 minutes": of some rows of the table that readRuns() gives.
[[nodiscard]] std::string totalsInWords(const table::TextTable& runs,
                                        std::span<const std::size_t> rows);

}  // namespace runsearch
