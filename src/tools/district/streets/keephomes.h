#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

struct HomesReport {
    std::filesystem::path file;
    std::size_t homes = 0;
    std::size_t byAddress = 0;          ///< of them
    std::vector<std::string> unplaced;  ///< lines whose address no place was found for
    std::vector<std::string> faults;    ///< a sentence for each other line left out

    [[nodiscard]] std::string text() const;
};

/// Takes students' homes from a file of separated values and keeps them beside the district's
/// databases, in the place of those kept before. Its first line names the columns: address, or
/// number and street; or x and y (feet of the district), or latitude and longitude; student may
/// stand beside them. A line without a position is placed by its address, where the district's
/// streets know exactly that one. Raises base::RunTimeError for a file that is missing, lacks
/// columns, or places no home; then the former list stays. Raises Interrupted.
HomesReport keepHomes(const Folders& folders, const std::filesystem::path& file,
                      Progress& progress);

}  // namespace tools::district
