#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/schema/schema.h"
#include "platform/store/base/database.h"

namespace data {

/// What brings a district from one version to the next in one of its files. Before the statements
/// of any step run, every table has all the columns and indexes of today's schema: a step for a new
/// column needs statements only where old rows get something else than its default.
struct UpgradeStep {
    std::int32_t number = 0;  ///< the version that a district has afterwards
    DatabaseFile file = DatabaseFile::Routing;
    std::string_view what;                ///< "adds the missing row of SYSTEM"
    std::vector<std::string> statements;  ///< of the store's own dialect
};

/// Every step, in the order in which they are made.
[[nodiscard]] const std::vector<UpgradeStep>& upgradeSteps();

/// The version that this program works with: the number of the last step. Districts made before
/// there were versions are of version 0.
[[nodiscard]] std::int32_t currentVersion();

/// How a file of a district made today is marked.
[[nodiscard]] store::FileMark markOf(DatabaseFile file);

/// What a program of this version makes of a file.
enum class Age {
    Current,
    Older,   ///< of an earlier version, or without a table or column that it should have
    Newer,   ///< of a version that this program does not know
    Foreign  ///< no such file of a district
};

/// One of a district's files as it was found.
struct FoundFile {
    DatabaseFile file = DatabaseFile::Routing;
    std::string path;
    store::FileMark mark;
    Age age = Age::Current;
    std::string missing;  ///< the first table or column that is, "RUN.COMMENT"
};

/// Looks at an open file; its catalogue may show tables of linked files beside its own.
[[nodiscard]] FoundFile lookAt(DatabaseFile file, std::string path, store::FileMark mark,
                               const store::Catalog& catalog);

/// Why this program cannot work with these files, in plain words, and what helps; empty where it
/// can. `folder` is the district's as `vireo-district` takes it.
[[nodiscard]] std::string versionComplaint(std::span<const FoundFile> files,
                                           const std::string& folder);

}  // namespace data
