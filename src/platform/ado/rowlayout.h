#pragma once

#include <vector>

#include "platform/jet/translate.h"
#include "platform/store/base/schema.h"

namespace ado {

/// How the columns of a result belong to the tables that its rows come from. Good as long as the
/// catalogue stays as it is.
class RowLayout {
public:
    struct BaseTable {
        const store::Table* table = nullptr;
        int keyColumn = -1;        ///< the hidden column with the row's key; -1: cannot be written
        std::vector<int> columns;  ///< the result's columns of this table, none twice
    };
    struct Column {
        const store::Column* column = nullptr;  ///< null for an expression
        int table = -1;                         ///< index into tables()
        int first = -1;  ///< the first column of the result that shows this column of this table
    };

    RowLayout(const jet::Translation& translation, const store::Catalog& catalog);

    [[nodiscard]] const std::vector<BaseTable>& tables() const { return tables_; }
    [[nodiscard]] const BaseTable& table(int index) const {
        return tables_[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] const Column& column(int index) const {
        return columns_[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] int columnCount() const { return static_cast<int>(columns_.size()); }
    /// Visible and hidden columns together.
    [[nodiscard]] int width() const { return width_; }
    /// The one table whose rows can be written; -1 where there are none or several.
    [[nodiscard]] int soleTable() const;

private:
    void addColumn(const jet::OutputColumn& output);

    std::vector<BaseTable> tables_;
    std::vector<Column> columns_;
    int width_ = 0;
};

}  // namespace ado
