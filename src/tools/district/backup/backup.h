#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

struct BackupOptions {
    Folders folders;
    /// The back-up, or a folder in which it gets the district's name and the date.
    std::filesystem::path target;
    /// How many back-ups of this one's kind stay, itself among them; all without a number.
    std::optional<std::size_t> keep = {};
};

struct BackupOutcome {
    std::filesystem::path file;
    std::int64_t bytes = 0;                           ///< of the district
    std::int64_t packedBytes = 0;                     ///< of the back-up
    std::vector<std::filesystem::path> leftOut = {};  ///< files that lie outside its folders
    std::vector<std::filesystem::path> removed = {};
};

/// Writes a district's six files as they are at one moment, its settings, and what belongs to it
/// beside them (see filesBeside()) into an archive that only its owner reads, while planners work;
/// they wait for milliseconds. The archive stands under
/// its name whole or not at all. Of a district on a server it is the server's own kind of back-up,
/// of its databases alone, which was read again to its end. Back-ups that names tell apart by their
/// digits alone are of one kind; the oldest of them are removed once the new one is there. Raises
/// base::RunTimeError where a file of that name is there or the district is damaged,
/// store::StoreError, Interrupted.
BackupOutcome backUpDistrict(const BackupOptions& options, Progress& progress);

}  // namespace tools::district
