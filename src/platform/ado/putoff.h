#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/ahead.h"

namespace ado {

/// Raises RecordDeleted or RecordChanged unless the row was written.
void requireWritten(store::RowOutcome outcome, std::string_view table);

/// Writes of a unit that wait for one another, in the order in which they were made.
class PutOffWrites {
public:
    explicit PutOffWrites(store::Database& database) : database_(database) {}

    [[nodiscard]] bool isEmpty() const { return writes_.empty(); }
    /// `source` is the statement that an error tells.
    void add(store::FetchedRow row, std::vector<store::ColumnValue> changes,
             std::string_view source);
    void add(BoundStatement bound, std::string_view source);
    void clear();

    /// Writes them at once, with the commit where that is asked for. Where one cannot be written
    /// those before it are, and it raises what it would have raised by itself; those behind it are
    /// given up. Whether the unit is committed.
    bool write(bool commits);

private:
    struct One {
        store::FetchedRow row;
        std::vector<store::ColumnValue> changes;
        BoundStatement bound;  ///< or none, for a row
        std::string source;
    };
    [[nodiscard]] bool writeTogether(bool commits);
    void writeOne(const One& one);

    store::Database& database_;
    std::deque<One> writes_;
};

}  // namespace ado
