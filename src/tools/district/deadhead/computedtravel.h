#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace tools::district {

/// Minutes and miles as the table stores them.
struct StoredTravel {
    float minutes = 0;
    float miles = 0;

    friend bool operator==(const StoredTravel&, const StoredTravel&) = default;
};

/// Travel by the internal ids of end point and destination, as the columns stand.
using TravelRows = std::map<std::pair<std::int64_t, std::int64_t>, StoredTravel>;

/// The list of travel that was worked out and not entered. A missing list is empty, and lines that
/// are none are passed over: what is not listed counts as entered. Raises base::RunTimeError.
[[nodiscard]] TravelRows readComputed(const std::string& path);
void writeComputed(const std::string& path, const TravelRows& rows);

}  // namespace tools::district
