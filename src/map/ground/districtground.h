#pragma once

#include <memory>

#include "map/ground/ground.h"
#include "streets/district/districtstreets.h"

namespace map {

/// What lies below the runs of a district; nothing but ground where it has no streets (null).
[[nodiscard]] std::shared_ptr<const Ground> groundOf(
    const std::shared_ptr<const streets::DistrictStreets>& streets);

}  // namespace map
