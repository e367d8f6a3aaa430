#pragma once

#include <optional>
#include <string>

#include "platform/ado/connection.h"
#include "platform/base/date.h"

namespace stops {

/// What tells a run from others, as it is stored. A run that is not stored has nothing.
struct RunHead {
    bool exists = false;
    std::string description = {};
    std::string tripType = {};
    std::string school = {};
    std::optional<base::Date> bell = {};
    bool isPickup = false;
    std::string vehicle = {};  ///< of its route; "" where none is known
    std::string vehType = {};  ///< of that vehicle, otherwise of the run
    std::string capacityLevel = {};
};

[[nodiscard]] RunHead readRunHead(ado::Connection& routing, ado::Connection& trip,
                                  const std::string& run);

}  // namespace stops
