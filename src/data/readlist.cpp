#include "data/readlist.h"

#include <fmt/format.h>

#include "data/cells.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"
#include "startup/mdlNONULL.h"

namespace data {

namespace {

/// The fields of one column, found once for all rows.
class ColumnReader {
public:
    ColumnReader(const LookupColumn& column, ado::Recordset& rows) : kind_(column.kind) {
        for (const auto name : column.fields) {
            fields_.push_back(&rows.Fields(name));
        }
    }

    [[nodiscard]] base::Value cell() const {
        return fields_.size() == 1 ? cellValue(kind_, fields_.front()->Value()) : joined();
    }

private:
    [[nodiscard]] base::Value joined() const {
        std::string text;
        for (const auto* field : fields_) {
            text += text.empty() ? "" : ", ";
            text += startup::NoNullString(field->Value()).asText();
        }
        return base::trim(text);
    }

    controls::CellKind kind_;
    std::vector<const ado::Field*> fields_;
};

/// Opens the list's rows and reads each into cells, calling `row` with them.
template <class Row>
void forEachRow(const ListLookup& lookup, ado::Connection& connection, Row row) {
    ado::Recordset rows;
    rows.Open(lookup.sql, connection);
    std::vector<ColumnReader> readers;
    for (const auto& column : lookup.columns) {
        readers.emplace_back(column, rows);
    }
    for (; !rows.Eof(); rows.MoveNext()) {
        row(readers);
    }
}

}  // namespace

controls::TextTable readList(const ListLookup& lookup, ado::Connection& connection) {
    controls::TextTable table;
    for (const auto& column : lookup.columns) {
        table.columns.push_back({std::string(column.caption), column.widthTwips, column.kind});
    }
    forEachRow(lookup, connection, [&](const std::vector<ColumnReader>& readers) {
        const auto row = table.addRow();
        for (std::size_t i = 0; i < readers.size(); ++i) {
            table.set(row, i, readers[i].cell());
        }
    });
    return table;
}

std::vector<std::string> readPlainList(const ListLookup& lookup, ado::Connection& connection) {
    std::vector<std::string> items;
    forEachRow(lookup, connection, [&](const std::vector<ColumnReader>& readers) {
        items.push_back(fmt::format("{}{}{}", base::trim(readers[0].cell().asText()),
                                    lookup.plainSeparator, base::trim(readers[1].cell().asText())));
    });
    return items;
}

}  // namespace data
