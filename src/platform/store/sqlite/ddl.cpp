#include "platform/store/sqlite/ddl.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/store/base/database.h"

namespace store::sqlite {

namespace {

/// Declared types are chosen so that the engine's affinity fits the values: anything with TEXT
/// keeps text, INTEGER whole numbers, DOUBLE and FLOAT numbers.
std::string_view declaredType(ColumnKind kind) {
    switch (kind) {
        case ColumnKind::Code:
            return "CODE TEXT COLLATE NOCASE";
        case ColumnKind::Text:
            return "TEXT COLLATE NOCASE";
        case ColumnKind::Integer:
        case ColumnKind::Counter:
            return "INTEGER";
        case ColumnKind::Number:
            return "DOUBLE";
        case ColumnKind::Single:
            return "SINGLE FLOAT";
        case ColumnKind::YesNo:
            return "BOOLEAN";
        case ColumnKind::Date:
            return "DATETIME TEXT";
    }
    return "TEXT";
}

/// The check's name is what other tools show when it fails.
std::string checkOf(const Column& column) {
    const std::string name = quoted(column.name);
    if (column.kind == ColumnKind::Code) {
        return fmt::format(" CONSTRAINT {} CHECK ({} = ' ' OR length({}) = length(rtrim({})))",
                           quoted(column.name + " must not end in blanks"), name, name, name);
    }
    if (column.kind == ColumnKind::YesNo) {
        return fmt::format(" CONSTRAINT {} CHECK ({} IN (0, 1))",
                           quoted(column.name + " must be 0 or 1"), name);
    }
    return {};
}

std::string defaultOf(const Column& column) {
    if (!column.defaultSql.empty()) {
        return fmt::format(" DEFAULT ({})", column.defaultSql);
    }
    return column.kind == ColumnKind::YesNo ? " DEFAULT (0)" : "";
}

std::string columnLine(const Column& column, bool isRowNumber) {
    const bool required = column.kind == ColumnKind::YesNo || !column.nullable;
    return fmt::format("  {} {}{}{}{}{}", quoted(column.name), declaredType(column.kind),
                       isRowNumber ? " PRIMARY KEY" : "",
                       column.kind == ColumnKind::Counter ? " AUTOINCREMENT"
                       : required                         ? " NOT NULL"
                                                          : "",
                       defaultOf(column), checkOf(column));
}

std::string createTable(const Table& table) {
    // A sole whole-number key is the row's own number in the file and needs no index of its own.
    const bool rowNumber = hasWholeKey(table);
    std::string lines = base::joined(table.columns, ",\n", [&](const Column& column) {
        return columnLine(column, rowNumber && base::equalsNoCase(column.name, table.key.front()));
    });
    if (!table.key.empty() && !rowNumber) {
        lines += fmt::format(",\n  PRIMARY KEY ({})", quotedList(table.key));
    }
    return fmt::format("CREATE TABLE {} (\n{}\n)", quoted(table.name), lines);
}

std::string createIndex(const Table& table, const Index& index) {
    return fmt::format("CREATE {}INDEX {} ON {} ({})", index.unique ? "UNIQUE " : "",
                       quoted(nameOf(index, table)), quoted(table.name), quotedList(index.columns));
}

}  // namespace

std::string createTableStatement(const Table& table) {
    requireSoundKey(table);
    return createTable(table);
}

std::string addColumnStatement(const Table& table, const Column& column) {
    requireAddable(table, column);
    return fmt::format("ALTER TABLE main.{} ADD COLUMN{}", quoted(table.name),
                       columnLine(column, false));
}

std::vector<std::string> createIndexStatements(const Table& table,
                                               const std::vector<Index>& indexes) {
    std::vector<std::string> statements;
    for (const Index& index : besideKey(table, indexes)) {
        statements.push_back(createIndex(table, index));
    }
    return statements;
}

ColumnKind kindOfDeclaredType(std::string_view type) {
    static constexpr std::array<std::pair<std::string_view, ColumnKind>, 20> Words{{
        {"CODE", ColumnKind::Code},     {"BOOL", ColumnKind::YesNo},
        {"YESNO", ColumnKind::YesNo},   {"LOGICAL", ColumnKind::YesNo},
        {"DATE", ColumnKind::Date},     {"TIME", ColumnKind::Date},
        {"SINGLE", ColumnKind::Single}, {"COUNTER", ColumnKind::Integer},
        {"CHAR", ColumnKind::Text},     {"CLOB", ColumnKind::Text},
        {"TEXT", ColumnKind::Text},     {"MEMO", ColumnKind::Text},
        {"INT", ColumnKind::Integer},   {"LONG", ColumnKind::Integer},
        {"REAL", ColumnKind::Number},   {"FLOA", ColumnKind::Number},
        {"DOUB", ColumnKind::Number},   {"NUM", ColumnKind::Number},
        {"DEC", ColumnKind::Number},    {"CURRENCY", ColumnKind::Number},
    }};
    const std::string upper = base::uppered(type);
    const auto* at = std::find_if(Words.begin(), Words.end(), [&upper](const auto& word) {
        return upper.find(word.first) != std::string::npos;
    });
    if (at != Words.end()) {
        return at->second;
    }
    return upper == "BIT" ? ColumnKind::YesNo : ColumnKind::Text;
}

}  // namespace store::sqlite
