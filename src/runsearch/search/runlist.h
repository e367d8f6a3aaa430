#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/ado/recordset.h"
#include "platform/table/texttable.h"

namespace runsearch {

/// Cells of one row that turn red, first and last included.
struct CellRange {
    std::size_t first;
    std::size_t last;
};

/// The run list with or without its four route columns.
class RunListLayout {
public:
    explicit RunListLayout(bool withRouting);

    /// Captions, widths and kinds in the order of the list. The width of 1000 twips after the
    /// totals goes to "Total Students" with routing and to "Total Stops" without: meant as it is.
    [[nodiscard]] const std::vector<table::TableColumn>& columns() const { return columns_; }

    /// The record's fields, the n-th shown in the n-th column. With routing there is none for
    /// "Total Students": the capacity stands there, the time to use under "Capacity", and the last
    /// column stays empty. Meant as it is.
    [[nodiscard]] const std::vector<std::string_view>& fields() const { return fields_; }

    /// What a run that must be regenerated shows in red. The last two filled columns stay plain.
    [[nodiscard]] CellRange redCells() const { return {0, withRouting_ ? 16U : 12U}; }

private:
    bool withRouting_;
    std::vector<table::TableColumn> columns_;
    std::vector<std::string_view> fields_;
};

/// The table of all runs from the current one on, one row a run.
[[nodiscard]] table::TextTable readRuns(const RunListLayout& layout, ado::Recordset& runs);

}  // namespace runsearch
