#include <fmt/format.h>

#include "platform/base/value.h"
#include "runedit/validation/rules.h"

namespace runedit {

namespace {

constexpr auto DistrictSql = "Select * From District";

std::int16_t maxRideTime(ado::Connection& routing) {
    ado::Recordset district(DistrictSql, routing);
    return integer16(wholeOf(district["MaxRideTime"]));
}

}  // namespace

Findings ridesTooLong(const StopRows& stops, std::int16_t maximum) {
    Findings findings;
    for (const StopRow& stop : stops) {
        if (stop.rideMinutes > maximum) {
            findings.push_back(
                {stop.run,
                 fmt::format("StopID: {} has a ride time greater than the max allowed.  "
                             "Stop's total ride time: {} minutes max allowed: {} minutes.",
                             stop.stopId, base::numberText(stop.rideMinutes), maximum)});
        }
    }
    return findings;
}

std::vector<std::string> rideTimeReads(const CheckedRun& run) {
    return {DistrictSql, stopsSql(timedStopsOf(run.run))};
}

Findings Check_Run_RideTime(const CheckedRun& run, const ValidationDatabases& databases) {
    const auto maximum = maxRideTime(databases.routing);
    return ridesTooLong(readStops(databases.routing, timedStopsOf(run.run)), maximum);
}

}  // namespace runedit
