#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>

#include "platform/base/date.h"
#include "platform/geo/projection.h"
#include "tools/district/base/folders.h"
#include "tools/district/command/answer.h"

namespace tools::district {

struct ExportOptions {
    Folders folders;
    std::filesystem::path target;
    bool withoutNames = false;
    Result result = nullptr;
};

/// Writes a district's tables into a new folder, which stands there whole or not at all. Raises
/// base::RunTimeError, store::StoreError, Interrupted.
void runExport(const ExportOptions& options, std::ostream& out);

struct FeedOptions {
    Folders folders;
    /// A new folder, or an archive that ends in ".zip".
    std::filesystem::path target;
    /// Where the middle of the stops lies, for a district that keeps no centre yet.
    std::optional<geo::Degrees> centre = {};
    std::string timezone = {};  ///< "America/Chicago"
    std::string url = {};
    base::Date from = {};
    base::Date until = {};
    Result result = nullptr;
};

/// Writes a district's active runs as a transit feed, tells of each run that was left out, and
/// keeps a centre that is given. Raises as runExport does.
void runFeedExport(const FeedOptions& options, std::ostream& out);

}  // namespace tools::district
