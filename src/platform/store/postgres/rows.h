#pragma once

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/store/postgres/link.h"

namespace store::postgres {

/// Reads and writes single rows by key; keeps what it prepared, for a bounded number of different
/// statements.
class Rows {
public:
    explicit Rows(Link& link) : link_(link) {}

    RowOutcome update(const FetchedRow& row, const std::vector<ColumnValue>& changes);
    /// The same, to be run together with others: it fails where the row does not get written. Holds
    /// until `forgetMany`.
    Query& updateOrFail(const FetchedRow& row, const std::vector<ColumnValue>& changes,
                        std::vector<Parameter>& parameters);
    /// The same for rows of one table with the same columns, which go as one statement.
    Query& updateManyOrFail(std::span<const Write> writes, std::vector<Parameter>& parameters);
    /// Lets go of what is prepared where that has become much.
    void forgetMany();
    RowOutcome remove(const FetchedRow& row);
    base::Value insert(const Table& table, const std::vector<ColumnValue>& values);
    bool read(const Table& table, const base::Value& key, std::vector<ColumnValue>& columns);
    base::Value defaultOf(const Column& column);

private:
    Query& queryOf(const std::string& sql);
    Result run(const std::string& sql, const std::vector<Parameter>& parameters);
    RowOutcome outcomeOf(const FetchedRow& row);

    Link& link_;
    std::unordered_map<std::string, Query> prepared_;
};

/// How many of the writes, from the first one on, can go as one statement; 0 where it is no row.
[[nodiscard]] std::size_t rowsAlike(std::span<const Write> writes);

}  // namespace store::postgres
