#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/table/texttable.h"
#include "runsearch/log/runlogquery.h"

namespace runsearch {

/// Reads the entries of one search bit by bit, newest first. Nothing of the log stays open between
/// two parts: each is a question of its own, which goes on behind the last entry read. Entries made
/// after the search are newer than all of it and do not show; those deleted meanwhile are left out.
/// Everything here raises jet::SqlError and store::StoreError.
class RunLogReader {
public:
    RunLogReader(ado::Connection& routing, RunLogFilters filters);

    /// A table with the list's columns and no rows; "ID" is the key of an entry.
    [[nodiscard]] static table::TextTable emptyTable();
    /// Adds the next entries to a table made by emptyTable(), at most so many.
    void read(std::size_t entries, table::TextTable& into);
    [[nodiscard]] bool atEnd() const { return atEnd_; }
    /// Entries so far.
    [[nodiscard]] std::int64_t entriesRead() const { return read_; }

    /// Counts for some tens of milliseconds, unless the number is known.
    void countOn();
    /// Entries in all; nothing until they are counted or read to the end.
    [[nodiscard]] std::optional<std::int64_t> total() const;

private:
    [[nodiscard]] std::int64_t number(const std::string& sql, std::string_view name);
    [[nodiscard]] KeyRange allKeys();
    [[nodiscard]] RunLogWay bestWay();
    void readStretch(std::size_t entries, std::size_t most, table::TextTable& into);
    void remember(const ado::Field& time, const ado::Field& key);
    void leaveStretch();

    ado::Connection& routing_;
    RunLogFilters filters_;
    std::optional<RunLogWay> way_;  ///< nothing until the first entries are read
    RunLogPlace place_;
    bool atEnd_ = false;
    std::int64_t read_ = 0;

    std::int64_t counted_ = 0;
    bool isCounted_ = false;
    std::optional<KeyRange> toCount_;  ///< of a count that is taken in parts
};

}  // namespace runsearch
