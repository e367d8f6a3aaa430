#pragma once

#include <iosfwd>

#include "tools/district/import/apply/importer.h"

namespace tools::district {

/// Imports, says what it did or would do, as plain text or as JSON, and looks the district over
/// afterwards where something was written. Returns whether all lines were taken and no fault was
/// found. Raises what importInto does.
bool runImport(const ImportOptions& options, bool asJson, std::ostream& out);

}  // namespace tools::district
