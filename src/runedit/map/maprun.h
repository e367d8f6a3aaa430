#pragma once

#include <optional>
#include <string>

#include "platform/ado/connection.h"
#include "platform/base/date.h"

namespace runedit {

/// What the map program is told of a run. Nothing stands for a missing time.
struct MapRun {
    std::string run = {};       ///< as it is stored
    std::string capacity = {};  ///< the level: "High", "Medium" or "Low"; a blank one is "Medium"
    double overfill = 0;        ///< seats added to the vehicle type's
    std::string timeToUse = {};
    std::string vehType = {};
    std::optional<base::Date> startTime = {};
    std::optional<base::Date> endTime = {};
    std::optional<base::Date> bellTime = {};
    bool pickup = false;

    /// Whether the run's times are counted from its start rather than from its end.
    [[nodiscard]] bool countsFromStart() const;
    /// "Start" or "End".
    [[nodiscard]] std::string startOrEnd() const;
};

/// Raises "Invalid procedure call" (5) for a run that is not there.
[[nodiscard]] MapRun readMapRun(ado::Connection& connection, const std::string& run);

/// A time as the map program is given it: "8:05:00 AM", midnight for a missing one.
[[nodiscard]] std::string mapTimeText(const std::optional<base::Date>& time);

}  // namespace runedit
