#pragma once

#include <filesystem>
#include <optional>

#include "tools/district/base/progress.h"

namespace tools::district {

/// Restores a district from an archive of backUpDistrict() into a new folder, or in the place of
/// the district that stands there: its settings name that folder, what belonged to it beside its
/// databases stands under the same names, whatever else stood in the folder stays,
/// and the files as they were are kept in a folder of it, which is returned. Nobody may work there.
/// All of it appears at one moment: one that is killed leaves the folder as before or restored.
/// Raises base::RunTimeError for a file that is no sound back-up and where somebody works in the
/// district, store::StoreError, Interrupted.
std::optional<std::filesystem::path> restoreDistrict(const std::filesystem::path& file,
                                                     const std::filesystem::path& folder,
                                                     Progress& progress);

}  // namespace tools::district
