#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace groupops {

/// Seats of a vehicle type at a capacity level; nothing for an unknown type.
using SeatsOf = std::function<std::optional<std::int64_t>(const std::string& vehType,
                                                          const std::string& level)>;

/// As the session's district has them.
[[nodiscard]] std::optional<std::int64_t> seatsOf(const std::string& vehType,
                                                  const std::string& level);

}  // namespace groupops
