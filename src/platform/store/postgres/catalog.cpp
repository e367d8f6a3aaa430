#include "platform/store/postgres/catalog.h"

#include <algorithm>

#include "platform/store/base/ddl.h"
#include "platform/store/postgres/ddl.h"

namespace store::postgres {

namespace {

const char* const Columns =
    "SELECT c.relname, a.attname, t.typname, a.attnotnull, a.attidentity,"
    " pg_get_expr(d.adbin, d.adrelid)"
    " FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace"
    " JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped"
    " JOIN pg_type t ON t.oid = a.atttypid"
    " LEFT JOIN pg_attrdef d ON d.adrelid = c.oid AND d.adnum = a.attnum"
    " WHERE n.nspname = $1 AND c.relkind IN ('r', 'p') ORDER BY c.oid, a.attnum";

const char* const Indexes =
    "SELECT c.relname, i.indexrelid, i.indisprimary, i.indisunique, a.attname"
    " FROM pg_index i JOIN pg_class c ON c.oid = i.indrelid"
    " JOIN pg_namespace n ON n.oid = c.relnamespace"
    " CROSS JOIN LATERAL unnest(i.indkey) WITH ORDINALITY AS k(attnum, place)"
    " JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum = k.attnum"
    " WHERE n.nspname = $1 AND i.indpred IS NULL ORDER BY c.oid, i.indexrelid, k.place";

/// One answer, read row by row.
class Reader {
public:
    explicit Reader(Result rows) : rows_(std::move(rows)) {}

    bool step() { return ++row_ < library().rowCount(rows_.get()); }
    [[nodiscard]] std::string text(int column) const {
        return library().value(rows_.get(), row_, column);
    }
    [[nodiscard]] bool isTrue(int column) const { return text(column) == "t"; }

private:
    Result rows_;
    int row_ = -1;
};

Column columnOf(const Reader& row) {
    Column column;
    column.name = row.text(1);
    column.kind = row.text(4).empty() ? kindOfType(row.text(2)) : ColumnKind::Counter;
    column.nullable = !row.isTrue(3);
    column.defaultSql = defaultOf(row.text(5));
    return column;
}

void addIndexColumn(Table& table, const Reader& row, bool isFirst) {
    const std::string column = row.text(4);
    if (row.isTrue(2)) {
        table.key.push_back(column);
        return;
    }
    if (column == RowNumber) {
        return;
    }
    if (isFirst) {
        table.indexes.push_back({{}, row.isTrue(3)});
    }
    table.indexes.back().columns.push_back(column);
}

void readIndexes(Link& link, const std::string& file, std::vector<Table>& tables) {
    Reader row(link.run(Indexes, {{file}}));
    std::string last;
    while (row.step()) {
        const auto table = std::ranges::find(tables, row.text(0), &Table::name);
        if (table != tables.end()) {
            addIndexColumn(*table, row, std::exchange(last, row.text(1)) != row.text(1));
        }
    }
}

}  // namespace

std::vector<Table> readTables(Link& link, const std::string& file) {
    std::vector<Table> tables;
    Reader row(link.run(Columns, {{file}}));
    while (row.step()) {
        if (tables.empty() || tables.back().name != row.text(0)) {
            tables.push_back({.name = row.text(0), .columns = {}});
        }
        if (row.text(1) == RowNumber) {
            tables.back().rowKey = RowNumber;
        } else {
            tables.back().columns.push_back(columnOf(row));
        }
    }
    readIndexes(link, file, tables);
    for (Table& table : tables) {
        if (table.rowKey.empty() && hasWholeKey(table)) {
            table.rowKey = quoted(table.key.front());
        }
    }
    return tables;
}

}  // namespace store::postgres
