#pragma once

#include "data/schema/schema.h"
#include "platform/store/base/database.h"

namespace data {

/// Has whoever watches a database told of the runs whose rows, or whose stops' rows, are written:
/// by the run's id. Once the tables are there and filled.
void announceRuns(store::Database& database, DatabaseFile file);
/// Whether that is so. Raises store::StoreError.
[[nodiscard]] bool areRunsAnnounced(const store::Database& database, DatabaseFile file);

}  // namespace data
