#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/table/texttable.h"

namespace table {

/// One column of a list of items: what stands above it and what it says of an item.
template <class Item>
struct ItemColumn {
    std::string caption;
    int widthTwips;
    std::function<std::string(const Item&)> text;
};

/// A row of texts for each item.
template <class Item>
[[nodiscard]] TextTable tableOf(const std::vector<Item>& items,
                                const std::vector<ItemColumn<Item>>& columns) {
    TextTable table;
    for (const auto& column : columns) {
        table.columns.push_back({column.caption, column.widthTwips});
    }
    for (const Item& item : items) {
        const auto row = table.addRow();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            table.setText(row, i, columns[i].text(item));
        }
    }
    return table;
}

}  // namespace table
