#pragma once

#include <optional>
#include <string>
#include <vector>

#include "map/shown/mappedrun.h"
#include "platform/base/date.h"
#include "streets/solve/solve.h"

namespace map {

/// A solution beside what is stored of the run.
struct Comparison {
    struct Stop {
        std::optional<base::Date> before = {};
        std::optional<base::Date> after = {};
        /// Minutes later; nothing where either is missing.
        [[nodiscard]] std::optional<double> minutesLater() const;
    };
    std::vector<Stop> stops = {};  ///< one for each of the run
    double minutesMore = 0;        ///< of the whole run
    double milesMore = 0;
    int changed = 0;  ///< stops whose times differ by half a minute or more
};

[[nodiscard]] Comparison compare(const MappedRun& run, const streets::Solution& solution);
/// "6.3 minutes, 1.77 miles shorter".
[[nodiscard]] std::string gainText(const Comparison& comparison);
/// "+2.9", "−0.7", "0.0"; the minus is a true one.
[[nodiscard]] std::string signedMinutes(double minutes);

}  // namespace map
