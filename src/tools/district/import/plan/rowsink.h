#pragma once

#include <cstdint>
#include <span>

#include "platform/base/value.h"
#include "tools/district/import/plan/storedtable.h"

namespace tools::district {

/// Takes what an import changes, row by row.
class RowSink {
public:
    virtual ~RowSink() = default;
    /// Returns the new row's number, by which other rows name it.
    virtual std::int64_t add(const StoredTable& table,
                             std::span<const store::Column* const> columns,
                             std::span<const base::Value> values) = 0;
    virtual void change(const StoredTable& table, std::int64_t row,
                        std::span<const store::Column* const> columns,
                        std::span<const base::Value> values) = 0;
    virtual void remove(const StoredTable& table, std::int64_t row) = 0;
};

}  // namespace tools::district
