#pragma once

#include <string>

namespace tools::launcher {

/// Starts the logon program for the district in a folder: that of the district's program folder, or
/// else the one of this installation; and where the district has runs shown on a map, the map,
/// which waits for the first of them. Raises what process::ProcessHost::start() raises.
void openDistrict(const std::string& folder);

}  // namespace tools::launcher
