#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/value.h"

namespace table {

/// How a column's cells are shown and sorted.
enum class CellKind {
    Text,      ///< as it is; Null shows as " "
    Number,    ///< unformatted; Null shows as 0 and counts as 0; sorted as a number
    Decimal,   ///< a number with two decimals; Null shows as 0.00 and counts as 0; sorted as such
    Time,      ///< "hh:mm AM"; Null shows blank; sorted as a time of day
    DateTime,  ///< the default text of a date-time; Null shows blank; sorted as a date-time
};
[[nodiscard]] bool isNumber(CellKind kind);
/// What a cell holds that no one sees: anything as it is.
inline constexpr auto HiddenKind = CellKind::DateTime;

struct TableColumn {
    std::string caption;
    int widthTwips = 0;  ///< 0 is the list's default width; 15 twips are one pixel
    CellKind kind = CellKind::Text;
    std::string name = {};  ///< what the column goes by: mostly the field of a record

    friend bool operator==(const TableColumn&, const TableColumn&) = default;
};

/// One of the columns that rows are sorted by, 0-based.
struct SortBy {
    std::size_t column = 0;
    bool descending = false;

    friend bool operator==(const SortBy&, const SortBy&) = default;
};

/// The rows of a list or a combo: values by row and column (both 0-based here), made into text only
/// where it is asked for. A cell takes 9 bytes, a text its length on top: a quarter of what a
/// base::Value takes. A text that is set anew gives its space back with clearRows().
class TextTable {
public:
    std::vector<TableColumn> columns;
    /// The names of what each row keeps behind its columns and does not show.
    std::vector<std::string> hiddenFields;

    /// Removes the rows, keeps the columns, which change only while there are no rows.
    void clearRows();
    /// Adds a row of Nulls; returns its index.
    std::size_t addRow();
    void set(std::size_t row, std::size_t column, const base::Value& value);
    void setText(std::size_t row, std::size_t column, std::string_view text);
    /// Adds the rows of a table with the same columns.
    void append(const TextTable& more);
    /// Cells from..to (both included) of the row get a red background.
    void colourRed(std::size_t row, std::size_t from, std::size_t to);

    [[nodiscard]] std::size_t rowCount() const { return red_.size(); }
    [[nodiscard]] base::Value value(std::size_t row, std::size_t column) const;
    [[nodiscard]] std::string text(std::size_t row, std::size_t column) const;
    /// The column, hidden ones included, that goes by a name, without regard to case; the first of
    /// several. Raises std::out_of_range.
    [[nodiscard]] std::size_t columnOf(std::string_view name) const;
    [[nodiscard]] base::Value value(std::size_t row, std::string_view name) const {
        return value(row, columnOf(name));
    }
    [[nodiscard]] std::string text(std::size_t row, std::string_view name) const {
        return text(row, columnOf(name));
    }
    [[nodiscard]] bool isRed(std::size_t row, std::size_t column) const;

    /// The order of the rows when sorted by a column: typed, Null first, numbers before texts,
    /// texts without case. Stable in both directions.
    [[nodiscard]] std::vector<std::size_t> sortedBy(std::size_t column, bool descending) const;
    /// The order by several columns, each of which decides where those before it say equal.
    [[nodiscard]] std::vector<std::size_t> sortedBy(std::span<const SortBy> sorting) const;

    /// Room for so many rows in all, with texts as long as those of the rows that are there.
    void reserve(std::size_t rows);
    /// The bytes that the rows hold, for measuring.
    [[nodiscard]] std::size_t bytes() const;

private:
    enum class Held : std::uint8_t { Null, YesNo, Integer, Number, Date, Text };
    struct Red {
        std::uint16_t from = 1, to = 0;
    };
    struct SortKey;

    [[nodiscard]] std::size_t width() const { return columns.size() + hiddenFields.size(); }
    [[nodiscard]] std::size_t cell(std::size_t row, std::size_t column) const {
        return row * width() + column;
    }
    [[nodiscard]] CellKind kindOf(std::size_t column) const {
        return column < columns.size() ? columns[column].kind : HiddenKind;
    }
    [[nodiscard]] std::string_view pooled(std::size_t cell) const;
    [[nodiscard]] SortKey sortKey(std::size_t row, std::size_t column) const;
    void sort(std::vector<std::size_t>& order, const SortBy& by) const;

    std::vector<Held> held_;
    std::vector<std::uint64_t> bits_;  ///< a number's bits; a text's place and length in pool_
    std::vector<char> pool_;
    std::vector<Red> red_;
};

}  // namespace table
