#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "tools/district/base/progress.h"
#include "tools/district/make/codes.h"

namespace tools::district {

/// A district that holds nothing of its own yet.
struct EmptyDistrict {
    std::string name;
    Administrator administrator;
};

/// What `create` is asked for: the sample district, an empty one, or a generated one where `runs`
/// is given.
struct CreateOptions {
    std::filesystem::path folder;
    std::optional<EmptyDistrict> empty = {};
    std::optional<std::int64_t> runs = {};
    std::uint64_t seed = 1;
};

/// Makes a district; it stands in its folder whole or not at all. Raises base::RunTimeError,
/// store::StoreError, Interrupted.
void createDistrict(const CreateOptions& options, Progress& progress);

}  // namespace tools::district
