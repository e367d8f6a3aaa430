#pragma once

#include <map>
#include <string>
#include <vector>

#include "operations.h"

namespace killing {

/// Everything that the routing database holds, by what an operation writes as one; what belongs to
/// no run, route or stop is by table.
using Snapshot = std::map<std::string, std::string>;

/// Where each stop trip stands on its run, by its id.
using Places = std::map<std::string, std::string>;

[[nodiscard]] Places placesIn(District& district);

/// `places` are those at the operation's end: they tell which log row goes with which moved stop.
[[nodiscard]] Snapshot snapshotOf(District& district, Operation::Unit unit, const Places& places);

/// How far an operation came that was cut off.
struct Reached {
    std::size_t units = 0;          ///< that the operation changes
    std::size_t changed = 0;        ///< of them, those that are as after it
    std::vector<std::string> torn;  ///< units that are as in none of the states
};

/// Compares with the states that the operation leads through, the first and the last one included.
/// With a state in between, the step from the first state to it is made by all units or by none.
[[nodiscard]] Reached compare(const Snapshot& cutOff, const std::vector<Snapshot>& states);

}  // namespace killing
