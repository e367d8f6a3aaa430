#include "platform/ado/rowlayout.h"

#include <algorithm>

namespace ado {

RowLayout::RowLayout(const jet::Translation& translation, const store::Catalog& catalog)
    : width_(static_cast<int>(translation.columns.size())) {
    for (const jet::BaseTable& base : translation.tables) {
        tables_.push_back({catalog.find(base.name), base.keyColumn, {}});
        width_ = std::max(width_, base.keyColumn + 1);
    }
    for (const jet::OutputColumn& output : translation.columns) {
        addColumn(output);
    }
}

void RowLayout::addColumn(const jet::OutputColumn& output) {
    const int index = columnCount();
    Column column{nullptr, output.table, index};
    if (output.table >= 0) {
        BaseTable& base = tables_[static_cast<std::size_t>(output.table)];
        column.column = base.table == nullptr ? nullptr : base.table->find(output.column);
        const auto same = std::find_if(base.columns.begin(), base.columns.end(), [&](int other) {
            return this->column(other).column == column.column;
        });
        if (same != base.columns.end()) {
            column.first = *same;
        } else if (column.column != nullptr) {
            base.columns.push_back(index);
        }
    }
    columns_.push_back(column);
}

int RowLayout::soleTable() const {
    const auto isWritable = [](const BaseTable& base) { return base.keyColumn >= 0; };
    const auto first = std::find_if(tables_.begin(), tables_.end(), isWritable);
    const auto writable = std::count_if(tables_.begin(), tables_.end(), isWritable);
    return writable == 1 ? static_cast<int>(first - tables_.begin()) : -1;
}

}  // namespace ado
