#include "data/lookups/readlist.h"

#include "data/lists/cells.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"

namespace data {

namespace {

using Fields = std::vector<const ado::Field*>;

/// The columns' fields, found once for all rows.
std::vector<Fields> fieldsOf(const ListLookup& lookup, ado::Recordset& rows) {
    std::vector<Fields> columns;
    for (const auto& column : lookup.columns) {
        auto& fields = columns.emplace_back();
        for (const auto name : column.fields) {
            fields.push_back(&rows.Fields(name));
        }
    }
    return columns;
}

/// What the fields of one column hold, ", " between them.
std::string textOf(const Fields& fields) {
    std::string text;
    for (const auto* field : fields) {
        text += field == fields.front() ? "" : ", ";
        text += base::trim(field->textView());
    }
    return std::string(base::trim(text));
}

/// Opens the list's rows and calls `row` for each with the fields of its columns.
template <class Row>
void forEachRow(const ListLookup& lookup, ado::Connection& connection, Row row) {
    ado::Recordset rows;
    rows.Open(lookup.sql, connection);
    const auto columns = fieldsOf(lookup, rows);
    for (; !rows.Eof(); rows.MoveNext()) {
        row(columns);
    }
}

}  // namespace

table::TextTable readList(const ListLookup& lookup, ado::Connection& connection) {
    table::TextTable table;
    for (const auto& column : lookup.columns) {
        table.columns.push_back({std::string(column.caption), column.widthTwips, column.kind});
    }
    forEachRow(lookup, connection, [&](const std::vector<Fields>& columns) {
        const auto row = table.addRow();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (columns[i].size() == 1) {
                setCell(table, row, i, *columns[i].front());
            } else {
                table.setText(row, i, textOf(columns[i]));
            }
        }
    });
    return table;
}

std::vector<std::string> readPlainList(const ListLookup& lookup, ado::Connection& connection) {
    std::vector<std::string> items;
    forEachRow(lookup, connection, [&](const std::vector<Fields>& columns) {
        items.push_back(textOf(columns[0]) + std::string(lookup.plainSeparator) +
                        textOf(columns[1]));
    });
    return items;
}

}  // namespace data
