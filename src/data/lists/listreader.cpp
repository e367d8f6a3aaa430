#include "data/lists/listreader.h"

#include "platform/base/text.h"
#include "platform/base/wait.h"
#include "startup/base/mdlNONULL.h"

namespace data {

namespace {

using table::CellKind;
using table::TextTable;

void setCell(TextTable& table, std::size_t row, std::size_t column, const ado::Field& field,
             CellKind kind) {
    switch (kind) {
        case CellKind::Text: {
            // NoNullString without making a value: most cells of a list are texts.
            const auto text = field.textView();
            table.setText(row, column, base::trim(text).empty() ? " " : text);
            break;
        }
        case CellKind::Number:
        case CellKind::Decimal:
            table.set(row, column, startup::NoNullNumber(field.Value()));
            break;
        default:
            table.set(row, column, field.Value());
    }
}

ado::Recordset& opened(ado::Recordset& rows, std::string_view sql, ado::Connection& connection) {
    rows.Open(sql, connection);
    return rows;
}

}  // namespace

TextTable emptyTable(ListColumns columns) {
    TextTable table;
    for (const auto& column : columns) {
        if (column.isHidden) {
            table.hiddenFields.emplace_back(column.field);
        } else {
            table.columns.push_back(
                {std::string(column.caption), column.widthTwips, column.kind,
                 std::string(column.field.empty() ? column.caption : column.field)});
        }
    }
    return table;
}

ListFields::ListFields(ListColumns columns, ado::Recordset& rows) {
    for (const bool areHidden : {false, true}) {
        for (const auto& column : columns) {
            if (column.isHidden == areHidden) {
                sources_.push_back({column.field.empty() ? nullptr : &rows.Fields(column.field),
                                    areHidden ? table::HiddenKind : column.kind});
            }
        }
    }
}

void ListFields::addRow(TextTable& table, const OnRow& onRow) const {
    const auto row = table.addRow();
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        if (const auto [field, kind] = sources_[i]; field != nullptr) {
            setCell(table, row, i, *field, kind);
        } else {
            table.setText(row, i, "");
        }
    }
    if (onRow) {
        onRow(table, row);
    }
}

TextTable readList(ListColumns columns, ado::Recordset& rows, const OnRow& onRow) {
    TextTable table = emptyTable(columns);
    const ListFields fields(columns, rows);
    for (base::Breath breath; !rows.Eof(); rows.MoveNext()) {
        fields.addRow(table, onRow);
        breath.take();
    }
    return table;
}

TextTable readList(ListColumns columns, std::string_view sql, ado::Connection& connection,
                   const OnRow& onRow) {
    ado::Recordset rows;
    return readList(columns, opened(rows, sql, connection), onRow);
}

ListReader::ListReader(ListColumns columns, std::string_view sql, ado::Connection& connection)
    : fields_(columns, opened(rows_, sql, connection)) {
    if (rows_.Eof()) {
        rows_.Close();
    }
}

void ListReader::read(TextTable& table, std::size_t most, const OnRow& onRow) {
    for (; most > 0 && !atEnd(); --most) {
        fields_.addRow(table, onRow);
        rows_.MoveNext();
        if (rows_.Eof()) {
            rows_.Close();
        }
    }
}

void ListReader::close() {
    if (!atEnd()) {
        rows_.Close();
    }
}

}  // namespace data
