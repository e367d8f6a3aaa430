#pragma once

#include <string>

#include "platform/store/base/database.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"
#include "tools/district/check/checks.h"

namespace tools::district {

// The parts of a check. Each adds to the report what it finds; all but the first read one database
// that sees the tables of all files, and pass over tables that it does not have.

/// Settings, and who may read the files.
void checkFiles(const Folders& folders, CheckReport& report);
/// Tables and columns that are missing.
void checkSchema(const store::Database& database, CheckReport& report);
/// Every cell: codes, date-times, yes/no, numbers.
void checkCells(store::Database& database, CheckReport& report, Progress& progress);
/// Keys that stand twice, and keys that name nothing.
void checkKeys(store::Database& database, CheckReport& report, Progress& progress);
/// What the program counts on: sequences, bounds, single rows, figures that can be.
void checkRules(store::Database& database, CheckReport& report, Progress& progress);

/// What the district drives on, and its list of closed streets.
void checkStreets(const Folders& folders, store::Database& database, CheckReport& report,
                  Progress& progress);

/// Runs a query whose rows are cases: the first column is the example, the second, if there is one,
/// how many cases the row stands for.
[[nodiscard]] CheckFinding findingOf(store::Database& database, std::string what,
                                     const std::string& sql);

/// A cell as text; empty for Null.
[[nodiscard]] std::string cellText(const store::Statement& row, int column);

}  // namespace tools::district
