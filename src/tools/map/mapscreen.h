#pragma once

#include "tools/map/mapservice.h"

namespace tools::map {

/// What the session's district drives on. Raises base::RunTimeError for a street file that is
/// missing, damaged or of a newer program.
[[nodiscard]] DistrictStreets openStreets(const std::string& closedStreets);

/// The district's map window, made when it is asked for. Uses the session's connection and folders.
[[nodiscard]] Screen desktopScreen();

/// Opens the window.
void showMap();

}  // namespace tools::map
