#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace store {

/// What a column holds, as far as comparing, binding and reading need to know.
enum class ColumnKind {
    Code,     ///< text without trailing blanks (a lone blank is allowed), compared without case
    Text,     ///< free text, stored as written, compared without case and trailing blanks
    Integer,  ///< whole number, 64 bits
    Number,   ///< number
    Single,   ///< number kept to single precision
    YesNo,    ///< 0 or 1, never Null
    Date,     ///< date-time at whole seconds; a time of day is on 1899-12-30
    Counter,  ///< generated whole number, never 0, never used again
};

[[nodiscard]] constexpr bool isText(ColumnKind kind) {
    return kind == ColumnKind::Code || kind == ColumnKind::Text;
}

/// One column. `name` is written as the table's owner writes it and matched without case.
struct Column {
    std::string name;
    ColumnKind kind = ColumnKind::Text;
    bool nullable = true;
    /// The default as SQL text ("0", "' '"), empty where there is none.
    std::string defaultSql = {};
};

/// An index over columns, in order.
struct Index {
    std::vector<std::string> columns;
    bool unique = false;
};

/// One table: its columns in order, its key columns (may be empty), its further indexes.
struct Table {
    std::string name;
    std::vector<Column> columns;
    std::vector<std::string> key = {};
    std::vector<Index> indexes = {};
    /// The expression that names a row for good ("rowid"); set by the catalogue of an open
    /// database.
    std::string rowKey = {};

    /// The column of that name, matched without case; null where there is none.
    [[nodiscard]] const Column* find(std::string_view columnName) const;
};

/// What a file's table lacks of a wanted one: the columns and indexes that are not there, the whole
/// table where `found` is null. Kinds and keys are not compared.
[[nodiscard]] Table lacking(const Table& wanted, const Table* found);

/// Who keeps the tables, and so how statements for them are written.
enum class Engine { Sqlite, Postgres };

/// The tables that a connection sees: the file's own first, then linked ones.
class Catalog {
public:
    explicit Catalog(Engine engine = Engine::Sqlite) : engine_(engine) {}

    [[nodiscard]] Engine engine() const { return engine_; }
    /// The table of that name, matched without case; null where there is none. Pointers stay valid
    /// until the catalogue changes.
    [[nodiscard]] const Table* find(std::string_view tableName) const;
    [[nodiscard]] const std::vector<Table>& tables() const { return tables_; }
    /// Adds a table unless one of its name is there already; true when it was added.
    bool add(Table table);

private:
    Engine engine_;
    std::vector<Table> tables_;
};

}  // namespace store
