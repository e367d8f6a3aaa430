#include "streets/solve/solve.h"

#include <array>

#include <fmt/format.h>

#include "platform/base/value.h"

namespace streets {

Solution solve(const Network&, const RunToSolve& run) {
    Solution solution;
    solution.stops.resize(run.stops.size());
    return solution;
}

std::string complaint(const RunStop& stop, Unserved::Why why) {
    constexpr std::array Sentences{
        "has no place on the map.", "is too far from any street that a bus may drive.",
        "cannot be served from its own side: no street there has it on the right of the bus.",
        "cannot be reached from the stop before it."};
    const std::string place = stop.address.empty() ? "" : fmt::format(" ({})", stop.address);
    return fmt::format("The stop {}{} {}", stop.stopId, place,
                       Sentences[static_cast<std::size_t>(why)]);
}

std::int64_t gapSeconds(double loadMinutes, double driveMinutesToNext) {
    const float minutes = static_cast<float>(driveMinutesToNext) + static_cast<float>(loadMinutes);
    return base::roundHalfEven(static_cast<double>(minutes * 60));
}

}  // namespace streets
