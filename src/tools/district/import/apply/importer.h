#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/base/date.h"
#include "platform/base/notcopied.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"
#include "tools/district/import/plan/comparison.h"

namespace tools::district {

struct ImportOptions {
    Folders folders;
    /// Files, and folders of which every file is taken that has the name of a kind.
    std::vector<std::filesystem::path> sources;
    std::filesystem::path map;       ///< empty: columns are found by their names
    std::filesystem::path rejected;  ///< refused lines go here, where there are any
    ImportRules rules;
    std::string user = "IMPORT";
    base::Date now = {};
    bool apply = false;
};

struct ImportResult {
    ImportOutcome outcome;
    bool isWritten = false;
};

/// Compares the sources with the district and, where asked, writes what differs. The write locks
/// are held for the writing only; whoever writes between comparing and locking makes it compare
/// anew, the third time with the locks held. All is written before the first file is committed, in
/// the order in which files name rows of one another: until then a failure, or a kill, leaves the
/// district as it was; one between two files leaves rows that nothing names yet, and the same
/// import again brings the rest. Raises Interrupted, base::RunTimeError, store::StoreError.
[[nodiscard]] ImportResult importInto(const ImportOptions& options, Progress& progress);

/// A folder of its own for a while, which only this account can read.
class PrivateFolder : private base::NotCopied {
public:
    /// Raises base::RunTimeError.
    PrivateFolder();
    ~PrivateFolder();
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// A first map for the sources. Raises base::RunTimeError.
[[nodiscard]] std::string sketchMaps(const std::vector<std::filesystem::path>& sources);

}  // namespace tools::district
