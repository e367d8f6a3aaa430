#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "data/lists/listreader.h"
#include "platform/ado/connection.h"
#include "platform/table/texttable.h"
#include "runsearch/log/runlogquery.h"

namespace runsearch {

/// Reads the entries of one search bit by bit, newest first, as the log was when it was searched.
///
/// It wants a connection of its own: rows that are still to be read would be read at once, all of
/// them, before the next write on the connection. Everything here raises jet::SqlError and
/// store::StoreError.
class RunLogReader {
public:
    RunLogReader(ado::Connection& routing, RunLogFilters filters);

    /// A table with the list's columns and no rows; "ID" is the key of an entry.
    [[nodiscard]] static table::TextTable emptyTable();
    /// Adds the next entries to a table made by emptyTable(), at most so many.
    void read(std::size_t entries, table::TextTable& into);
    [[nodiscard]] bool atEnd() const { return entries_.atEnd(); }
    /// Entries so far.
    [[nodiscard]] std::int64_t entriesRead() const { return read_; }

    /// Counts for some tens of milliseconds, unless the number is known.
    void countOn();
    /// Entries in all; nothing until they are counted or read to the end.
    [[nodiscard]] std::optional<std::int64_t> total() const;

private:
    [[nodiscard]] std::int64_t number(const std::string& sql, std::string_view name);

    ado::Connection& routing_;
    RunLogFilters filters_;
    data::ListReader entries_;
    std::int64_t read_ = 0;

    std::int64_t counted_ = 0;
    bool isCounted_ = false;
    std::optional<KeyRange> toCount_;  ///< of a count that is taken in parts
};

}  // namespace runsearch
