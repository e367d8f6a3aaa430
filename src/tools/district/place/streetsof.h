#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/store/base/database.h"
#include "streets/district/districtstreets.h"
#include "tools/district/base/folders.h"

namespace tools::district {

/// The name of the district's list of closed streets, as its record has it; empty for none. Of a
/// database without that record, too.
[[nodiscard]] std::string closedStreetsName(store::Database& routing);

/// What the district drives on. Raises what streets::openStreets() does.
[[nodiscard]] std::shared_ptr<const streets::DistrictStreets> openStreetsOf(
    const Folders& folders, store::Database& routing);

/// The files that belong to the district beside its databases, under their whole paths, whether
/// they are there or not: its streets, its addresses, its students' homes, the lists of closed streets
/// (its own and its runs'), and the list of empty travel that was worked out. Each once.
[[nodiscard]] std::vector<std::filesystem::path> filesBeside(const Folders& folders,
                                                             store::Database& routing);

}  // namespace tools::district
