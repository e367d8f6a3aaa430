#pragma once

#include <filesystem>

namespace tools::district {

/// Packs the files of a folder into a new zip archive, which stands under its name whole or not at
/// all. Raises base::RunTimeError, also where a file of that name is there.
void zipFolder(const std::filesystem::path& folder, const std::filesystem::path& file);

}  // namespace tools::district
