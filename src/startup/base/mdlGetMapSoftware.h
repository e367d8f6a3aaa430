#pragma once

namespace startup {

/// The map software that has an exchange with this program; any other setting has none.
inline constexpr const char* ArcView = "ArcView3.2";

/// Reads the map-software setting from gIniFile into gMapSoftware.
void GetMapSoftware();

}  // namespace startup
