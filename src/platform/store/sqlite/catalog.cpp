#include "platform/store/sqlite/catalog.h"

#include <map>
#include <utility>

#include <fmt/format.h>

#include "platform/store/sqlite/ddl.h"
#include "platform/store/sqlite/statement.h"

namespace store::sqlite {

namespace {

struct Reading {
    const Source& source;
    std::string attachedAs;

    [[nodiscard]] PreparedStatement query(const std::string& sql) const {
        return PreparedStatement(
            source, fmt::format(fmt::runtime(sql), fmt::arg("schema", quoted(attachedAs)),
                                fmt::arg("name", "'" + attachedAs + "'")));
    }
};

using TablesByName = std::map<std::string, Table>;

/// Whether the engine hands out the table's keys without ever using one again.
bool hasCounter(const Reading& reading, const std::string& table, const std::string& column) {
    int isCounter = 0;
    check(reading.source, sqlite3_table_column_metadata(
                              reading.source.handle, reading.attachedAs.c_str(), table.c_str(),
                              column.c_str(), nullptr, nullptr, nullptr, nullptr, &isCounter));
    return isCounter != 0;
}

Column columnOf(const PreparedStatement& row) {
    Column column;
    column.name = row.text(1);
    column.kind = kindOfDeclaredType(row.text(2));
    column.nullable = row.integer(3) == 0;
    column.defaultSql = row.text(4);
    return column;
}

TablesByName readColumns(const Reading& reading) {
    TablesByName tables;
    auto rows = reading.query(
        "SELECT m.name, c.name, c.type, c.\"notnull\", c.dflt_value, c.pk"
        " FROM {schema}.sqlite_schema AS m JOIN pragma_table_info(m.name, {name}) AS c"
        " WHERE m.type = 'table' ORDER BY m.name, c.cid");
    std::map<std::string, std::map<std::int64_t, std::string>> keys;
    while (rows.step()) {
        const std::string name(rows.text(0));
        Table& table = tables[name];
        table.name = name;
        table.columns.push_back(columnOf(rows));
        if (rows.integer(5) > 0) {
            keys[name][rows.integer(5)] = table.columns.back().name;
        }
    }
    for (const auto& [name, columns] : keys) {
        for (const auto& [position, column] : columns) {
            tables[name].key.push_back(column);
        }
    }
    return tables;
}

void markCounters(const Reading& reading, TablesByName& tables) {
    for (auto& [name, table] : tables) {
        for (Column& column : table.columns) {
            const bool isSoleKey = table.key.size() == 1 && table.key.front() == column.name;
            if (isSoleKey && column.kind == ColumnKind::Integer &&
                hasCounter(reading, name, column.name)) {
                column.kind = ColumnKind::Counter;
            }
        }
    }
}

void readIndexes(const Reading& reading, TablesByName& tables) {
    auto rows = reading.query(
        "SELECT m.name, i.name, i.\"unique\", c.name"
        " FROM {schema}.sqlite_schema AS m JOIN pragma_index_list(m.name, {name}) AS i"
        " JOIN pragma_index_info(i.name, {name}) AS c"
        " WHERE m.type = 'table' AND i.origin <> 'pk' AND NOT i.partial"
        " ORDER BY m.name, i.seq DESC, c.seqno");
    std::string last;
    while (rows.step()) {
        Table& table = tables[std::string(rows.text(0))];
        if (std::exchange(last, rows.text(1)) != rows.text(1)) {
            table.indexes.push_back({{}, rows.integer(2) != 0});
        }
        table.indexes.back().columns.emplace_back(rows.text(3));
    }
}

/// A table without row numbers, which other tools can make, is read but not written by row.
void markRowKeys(const Reading& reading, TablesByName& tables) {
    auto rows = reading.query(
        "SELECT name FROM pragma_table_list WHERE schema = {name} AND type = 'table' AND NOT wr");
    while (rows.step()) {
        const auto at = tables.find(std::string(rows.text(0)));
        if (at != tables.end() && at->second.find("rowid") == nullptr) {
            at->second.rowKey = "rowid";
        }
    }
}

}  // namespace

std::vector<Table> readTables(const Source& source, const std::string& attachedAs) {
    const Reading reading{source, attachedAs};
    TablesByName tables = readColumns(reading);
    markCounters(reading, tables);
    readIndexes(reading, tables);
    markRowKeys(reading, tables);

    std::vector<Table> result;
    auto names = reading.query(
        "SELECT name FROM {schema}.sqlite_schema WHERE type = 'table'"
        " AND name NOT LIKE 'sqlite@_%' ESCAPE '@' ORDER BY rowid");
    while (names.step()) {
        result.push_back(std::move(tables[std::string(names.text(0))]));
    }
    return result;
}

}  // namespace store::sqlite
