#pragma once

#include "streets/district/districtstreets.h"

namespace map {

/// Where the open district keeps what it drives on, and which of its streets are closed.
[[nodiscard]] streets::StreetPlaces streetsOfSession();

}  // namespace map
