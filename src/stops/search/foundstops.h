#pragma once

#include <cstddef>

#include "data/lists/listreader.h"
#include "platform/table/texttable.h"
#include "stops/search/chosenstop.h"
#include "stops/search/stopsearch.h"

namespace stops {

/// What a list says of a stop without a place on the map: both co-ordinates 0 or missing.
inline constexpr auto NoPlaceText = "no place on the map";

/// What a search finds, read piece by piece: 150,000 rows at once would hold up the form. A write
/// on the same connection reads what is left into memory, so close() before writing.
class FoundStops {
public:
    /// Asks. Raises jet::SqlError, store::StoreError.
    FoundStops(const StopSearchCriteria& criteria, ado::Connection& connection);

    /// The columns of the list, without rows.
    [[nodiscard]] const table::TextTable& emptyTable() const { return empty_; }
    [[nodiscard]] bool atEnd() const { return rows_.atEnd(); }
    /// Appends the next rows, at most so many.
    void read(table::TextTable& table, std::size_t most);
    /// No more rows will be read.
    void close() { rows_.close(); }

    /// The stop of a row of a table that was read.
    [[nodiscard]] ChosenStop chosen(const table::TextTable& table, std::size_t row) const;

private:
    bool tripTypes_;
    table::TextTable empty_;
    data::ListReader rows_;
};

}  // namespace stops
