#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/store/base/database.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

/// What a copy came to.
struct CopyOutcome {
    std::int64_t tables = 0;
    std::int64_t rows = 0;
};

/// Copies a district as it is at one moment, from a folder or a place on a server to another one
/// that has none, and compares each cell of the copy. A folder gets settings and companions, too.
/// Nothing is left of a copy that fails. Raises base::RunTimeError, Interrupted.
CopyOutcome copyDistrict(const std::string& from, const std::string& to, Progress& progress);

/// The same for databases that are open already and that nobody else writes to, one for each file
/// of a district in their order, and without settings and companions.
CopyOutcome copyDatabases(const std::vector<store::Database*>& originals, const Folders& to,
                          Progress& progress);

/// Makes a folder for this desktop whose databases are on a server. Raises base::RunTimeError where
/// there is no district, or the folder is taken.
void connectFolder(const std::filesystem::path& folder, const std::string& server);

}  // namespace tools::district
