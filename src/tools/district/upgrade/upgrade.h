#pragma once

#include <functional>
#include <string>

#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

/// Brings an older district's files to the version of this program. Nobody else may have one of
/// them open, and none comes in meanwhile. First all six are copied into a new folder of the
/// district, "backup-" and the date and time; then each file gets what it lacks in a transaction of
/// its own, so that one that is killed in between leaves every file as before or as after, and a
/// second run does what is left. Tells each deed in a line; tells nothing and changes nothing where
/// the district is of this version, but has others told of changes on a server that does not yet,
/// beside planners at work. Raises base::RunTimeError where somebody works in the district,
/// for a file that is newer or something else, store::StoreError, Interrupted.
void upgradeDistrict(const Folders& folders, Progress& progress,
                     const std::function<void(const std::string&)>& tell);

}  // namespace tools::district
