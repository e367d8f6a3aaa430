#pragma once

#include <iosfwd>

#include "tools/district/command/answer.h"
#include "tools/district/import/apply/importer.h"

namespace tools::district {

/// Imports, says what it did or would do, in words or in `result`, and looks the district over
/// afterwards where something was written. Returns whether all lines were taken and no fault was
/// found. Raises what importInto does.
bool runImport(const ImportOptions& options, std::ostream& out, Result result);

}  // namespace tools::district
