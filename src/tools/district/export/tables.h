#pragma once

#include <cstdint>
#include <filesystem>

#include "tools/district/base/progress.h"
#include "tools/district/export/snapshot.h"

namespace tools::district {

struct TablesWritten {
    std::int64_t tables = 0;
    std::int64_t rows = 0;
};

/// Writes every table of a district into a folder, "RUN.csv" and so on: UTF-8, a row of column
/// names, Null as nothing and the empty text as `""`, yes/no as True and False, date-times as
/// "2026-01-31 08:05:00", numbers with as many digits as tell them apart. What a report is being
/// made of is no table of the district and left out. Without names, people are replaced by invented
/// ones; see disguiseOf(). Raises base::RunTimeError, store::StoreError, Interrupted.
TablesWritten writeTables(const DistrictSnapshot& district, const std::filesystem::path& folder,
                          bool withoutNames, Progress& progress);

}  // namespace tools::district
