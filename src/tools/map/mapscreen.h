#pragma once

#include "tools/map/mapservice.h"

namespace tools::map {

/// The district's map window, made when it is asked for. Uses the session's connection and folders.
[[nodiscard]] Screen desktopScreen();

/// Opens the window.
void showMap();

}  // namespace tools::map
