#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "tools/district/base/progress.h"

namespace tools::district {

/// What `create` is asked for: the sample district, or a generated one where `runs` is given.
struct CreateOptions {
    std::filesystem::path folder;
    std::optional<std::int64_t> runs = {};
    std::uint64_t seed = 1;
};

/// Makes a district; it stands in its folder whole or not at all. Raises base::RunTimeError,
/// store::StoreError, Interrupted.
void createDistrict(const CreateOptions& options, Progress& progress);

}  // namespace tools::district
