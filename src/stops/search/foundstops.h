#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/ado/recordset.h"
#include "platform/table/texttable.h"
#include "stops/search/chosenstop.h"
#include "stops/search/stopsearch.h"

namespace stops {

/// What a search finds, read piece by piece: 150,000 rows at once would hold up the form. A write
/// on the same connection reads what is left into memory, so close() before writing.
class FoundStops {
public:
    /// Asks. Raises jet::SqlError, store::StoreError.
    FoundStops(const StopSearchCriteria& criteria, ado::Connection& connection);

    /// The columns of the list, without rows.
    [[nodiscard]] const table::TextTable& emptyTable() const { return empty_; }
    [[nodiscard]] bool atEnd() const;
    /// Appends the next rows, at most so many.
    void read(table::TextTable& table, std::size_t most);
    /// No more rows will be read.
    void close();

    /// The stop of a row; rows count from 0 in the order read.
    [[nodiscard]] ChosenStop chosen(const table::TextTable& table, std::size_t row) const;

private:
    bool tripTypes_;
    ado::Recordset rows_;
    table::TextTable empty_;
    std::vector<const ado::Field*> fields_;
    std::vector<std::int64_t> intStopIds_;
};

}  // namespace stops
