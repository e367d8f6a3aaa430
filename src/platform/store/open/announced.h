#pragma once

#include "platform/store/base/database.h"

namespace store {

/// Whether whoever watches the database is told of the rows of this table, see announce(). A file
/// needs nothing for that. Raises StoreError.
[[nodiscard]] bool isAnnounced(const Database& database, const Table& table);

}  // namespace store
