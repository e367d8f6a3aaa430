#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/store/base/database.h"
#include "platform/store/sqlite/statement.h"

namespace store::sqlite {

/// Reads and writes single rows by key; keeps the statements it prepared, for a bounded number of
/// different ones.
class Rows {
public:
    explicit Rows(const Source& source) : source_(source) {}

    RowOutcome update(const FetchedRow& row, const std::vector<ColumnValue>& changes);
    RowOutcome remove(const FetchedRow& row);
    base::Value insert(const Table& table, const std::vector<ColumnValue>& values);
    bool read(const Table& table, const base::Value& key, std::vector<ColumnValue>& columns);
    base::Value defaultOf(const Column& column);

    /// Lets go of every prepared statement.
    void clear() { prepared_.clear(); }

private:
    PreparedStatement& prepared(const std::string& sql);
    RowOutcome outcomeOf(const FetchedRow& row);

    const Source& source_;
    std::unordered_map<std::string, std::unique_ptr<PreparedStatement>> prepared_;
};

}  // namespace store::sqlite
