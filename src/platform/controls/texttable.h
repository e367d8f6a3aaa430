#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/value.h"

namespace controls {

/// How a column's cells are shown and sorted.
enum class CellKind {
    Text,      ///< as it is; Null shows as " "
    Number,    ///< unformatted; Null shows as 0; sorted as a number
    Time,      ///< "hh:mm AM"; Null shows blank; sorted as a time
    DateTime,  ///< the default text of a date-time; Null shows blank; sorted as a time
};

struct TableColumn {
    std::string caption;
    int widthTwips = 0;  ///< 0 is the list's default width; 15 twips are one pixel
    CellKind kind = CellKind::Text;
};

/// The rows of a list or a combo: values by row and column (both 0-based here), made into text only
/// where it is asked for.
class TextTable {
public:
    std::vector<TableColumn> columns;

    void clearRows();
    /// Adds a row of columns.size() Nulls; returns its index.
    std::size_t addRow();
    void set(std::size_t row, std::size_t column, base::Value value);
    /// Cells from..to (both included) of the row get a red background.
    void colourRed(std::size_t row, std::size_t from, std::size_t to);

    [[nodiscard]] std::size_t rowCount() const;
    [[nodiscard]] const base::Value& value(std::size_t row, std::size_t column) const;
    [[nodiscard]] std::string text(std::size_t row, std::size_t column) const;
    [[nodiscard]] bool isRed(std::size_t row, std::size_t column) const;

    /// The order of the rows when sorted by a column; stable, texts without case, Null first.
    [[nodiscard]] std::vector<std::size_t> sortedBy(std::size_t column, bool descending) const;

    void reserve(std::size_t rows);

private:
    struct Red {
        std::uint16_t from = 1, to = 0;
    };
    std::vector<base::Value> cells_;
    std::vector<Red> red_;
};

}  // namespace controls
