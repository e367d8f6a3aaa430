#pragma once

#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"
#include "tools/district/make/codes.h"
#include "tools/district/travel/model.h"

namespace tools::district {

/// Writes a district's six database files below `folders`, whose folders exist, with the rows that
/// it starts with and its own. Dead-head is left
/// uncalculated, as in a district fresh from an import: its minutes are -2, its times and miles
/// Null, every route is marked, and the system row asks for it. Raises store::StoreError.
void writeDistrict(const District& district, const std::vector<CodeRows>& start,
                   const Folders& folders, Progress& progress);

}  // namespace tools::district
