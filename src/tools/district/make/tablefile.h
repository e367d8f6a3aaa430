#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "data/schema/schema.h"
#include "platform/base/value.h"
#include "platform/store/base/database.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

/// What a row gets in one column: "RUN"_c = run.id
struct Cell {
    std::string_view column;
    base::Value value;
};

struct ColumnName {
    std::string_view name;
    Cell operator=(base::Value value) const { return {name, std::move(value)}; }
};

inline namespace literals {
constexpr ColumnName operator""_c(const char* name, std::size_t length) { return {{name, length}}; }
}  // namespace literals

/// Adds rows to one table. The first row says to which columns, the others get their defaults; the
/// rows after it name the same columns in the same order.
class RowInserter {
public:
    RowInserter(store::Database& database, std::string table)
        : database_(database), table_(std::move(table)) {}

    template <class... Cells>
    void add(Cells&&... cells) {
        const Cell row[] = {std::forward<Cells>(cells)...};
        addRow(row);
    }
    void addRow(std::span<const Cell> cells);

private:
    void prepare(std::span<const Cell> cells);

    store::Database& database_;
    std::string table_;
    std::unique_ptr<store::Statement> statement_;
};

/// One new database file: made with its tables, filled in one transaction, indexed at the end.
class TableFile {
public:
    TableFile(const Folders& folders, data::DatabaseFile file);

    [[nodiscard]] RowInserter into(const std::string& table) { return {*database_, table}; }
    /// Indexes and closes the file. Without it the file is not complete.
    void finish(Progress& progress);

private:
    data::DatabaseFile file_;
    std::unique_ptr<store::Database> database_;
};

}  // namespace tools::district
