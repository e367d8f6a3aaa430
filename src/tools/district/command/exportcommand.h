#pragma once

#include <filesystem>
#include <iosfwd>

#include "tools/district/base/folders.h"

namespace tools::district {

struct ExportOptions {
    Folders folders;
    std::filesystem::path target;
    bool withoutNames = false;
};

/// Writes a district's tables into a new folder, which stands there whole or not at all. Raises
/// base::RunTimeError, store::StoreError, Interrupted.
void runExport(const ExportOptions& options, std::ostream& out);

}  // namespace tools::district
