#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/table/texttable.h"

/// Lists as data: a list is a table of its columns, and everything else follows from that. Another
/// column is another line of the table.
namespace data {

/// One column of a list: what stands above it and the field of the record that it shows. It goes by
/// the name of the field, and by its caption where it shows none.
struct ListColumn {
    std::string_view caption = {};
    std::string_view field = {};  ///< none: stays empty unless the list's OnRow fills it
    int widthTwips = 0;           ///< 0 is the list's default width
    table::CellKind kind = table::CellKind::Text;
    bool isHidden = false;
};
using ListColumns = std::span<const ListColumn>;

/// A field that each row keeps, as it is stored, and no planner sees: a key, most of all.
constexpr ListColumn hidden(std::string_view field) { return {.field = field, .isHidden = true}; }

/// Called after each row that is read, for what no single field says.
using OnRow = std::function<void(table::TextTable& table, std::size_t row)>;

/// The list without rows.
[[nodiscard]] table::TextTable emptyTable(ListColumns columns);

/// The fields of an open recordset that a list shows, found once for all rows. A Null or blank text
/// becomes one blank, a number that is Null, zero or no number becomes 0, a time stays as it is.
class ListFields {
public:
    ListFields(ListColumns columns, ado::Recordset& rows);

    /// Adds the current row to a table made by emptyTable().
    void addRow(table::TextTable& table, const OnRow& onRow = {}) const;

private:
    struct Source {
        const ado::Field* field;
        table::CellKind kind;
    };
    std::vector<Source> sources_;
};

/// The list with all rows from the current one on; forms repaint while there are many.
[[nodiscard]] table::TextTable readList(ListColumns columns, ado::Recordset& rows,
                                        const OnRow& onRow = {});
/// The list with all rows of a question. Raises jet::SqlError, store::StoreError.
[[nodiscard]] table::TextTable readList(ListColumns columns, std::string_view sql,
                                        ado::Connection& connection, const OnRow& onRow = {});

/// Reads a long list bit by bit, as it was when it was asked for. A write on the same connection
/// reads what is left into memory: close() before writing, or use a connection of its own.
class ListReader {
public:
    /// Asks. Raises jet::SqlError, store::StoreError.
    ListReader(ListColumns columns, std::string_view sql, ado::Connection& connection);

    /// Adds the next rows, at most so many, to a table made by emptyTable().
    void read(table::TextTable& table, std::size_t most, const OnRow& onRow = {});
    [[nodiscard]] bool atEnd() const { return rows_.State() == ado::ObjectState::Closed; }
    /// No more rows will be read.
    void close();

    /// A field of the row being read, for an OnRow. Until the end.
    [[nodiscard]] const ado::Field& field(std::string_view name) { return rows_.Fields(name); }

private:
    ado::Recordset rows_;  ///< closed as soon as the last row is read
    ListFields fields_;
};

}  // namespace data
