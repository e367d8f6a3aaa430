#pragma once

#include <memory>
#include <vector>

#include "data/schema/schema.h"
#include "platform/store/base/database.h"
#include "tools/district/base/folders.h"

namespace tools::district {

/// A district's files as they are at one moment, in the order of data::AllDatabaseFiles, while
/// others go on writing. Raises base::RunTimeError for a district of another version,
/// store::StoreError.
class DistrictSnapshot {
public:
    explicit DistrictSnapshot(const Folders& folders);

    [[nodiscard]] store::Database& database(data::DatabaseFile file) const;

private:
    std::vector<std::unique_ptr<store::Database>> databases_;
};

}  // namespace tools::district
