#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "tools/district/base/progress.h"

namespace tools::district {

/// Restores a district from a file of backUpDistrict(). Files come into a new folder, or in the
/// place of the district that stands there: its settings name that folder, what belonged to it
/// beside its databases stands under the same names, whatever else stood in it stays, and the files
/// as they were are kept in a folder of it, which is returned. What was on a server comes to
/// `target` there, or to the server that a folder's settings name; a district that stands there is
/// replaced only where `mayReplace` says so, and kept in a back-up, which is returned. Nobody may
/// work there. All of it appears at one moment: one that is killed leaves what was there, or the
/// restored. Raises base::RunTimeError for a file that is no sound back-up of the kind and where
/// somebody works in the district, store::StoreError, Interrupted.
std::optional<std::filesystem::path> restoreDistrict(const std::filesystem::path& file,
                                                     const std::filesystem::path& target,
                                                     const std::function<bool()>& mayReplace,
                                                     Progress& progress);

}  // namespace tools::district
