#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "data/schema/schema.h"
#include "platform/base/value.h"
#include "platform/store/database.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

/// Adds rows to some columns of one table; the others get their defaults.
class RowInserter {
public:
    RowInserter(store::Database& database, const store::Table& table,
                const std::vector<std::string>& columns);

    /// One value for each column, in their order.
    template <class... Values>
    void add(const Values&... values) {
        int place = 0;
        (bind(place++, values), ...);
        finish();
    }
    void add(const std::vector<base::Value>& values);

private:
    template <class Cell>
    void bind(int place, const Cell& cell) {
        if constexpr (std::is_convertible_v<Cell, std::string_view>) {
            bindText(place, cell);
        } else {
            bindValue(place, cell);
        }
    }
    void bindText(int place, std::string_view text);
    void bindValue(int place, const base::Value& value);
    void finish();

    std::unique_ptr<store::Statement> statement_;
};

/// One new database file: made with its tables, filled in one transaction, indexed at the end.
class TableFile {
public:
    TableFile(const Folders& folders, data::DatabaseFile file);

    [[nodiscard]] RowInserter into(const std::string& table,
                                   const std::vector<std::string>& columns);
    /// Indexes and closes the file. Without it the file is not complete.
    void finish(Progress& progress);

private:
    data::DatabaseFile file_;
    std::unique_ptr<store::Database> database_;
};

}  // namespace tools::district
