#pragma once

#include <memory>

#include "map/ground/ground.h"
#include "streets/district/districtstreets.h"

namespace map {

/// What lies below a district's runs.
[[nodiscard]] std::shared_ptr<const Ground> groundOf(
    const std::shared_ptr<const streets::DistrictStreets>& streets);

}  // namespace map
