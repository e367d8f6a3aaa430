#include "platform/store/schema.h"

#include <algorithm>
#include <utility>

#include "platform/base/text.h"

namespace store {

namespace {

template <class Items>
auto* findNamed(const Items& items, std::string_view name) {
    const auto at = std::find_if(items.begin(), items.end(), [name](const auto& item) {
        return base::equalsNoCase(item.name, name);
    });
    return at == items.end() ? nullptr : &*at;
}

}  // namespace

const Column* Table::find(std::string_view columnName) const {
    return findNamed(columns, columnName);
}

const Table* Catalog::find(std::string_view tableName) const {
    return findNamed(tables_, tableName);
}

bool Catalog::add(Table table) {
    if (find(table.name) != nullptr) {
        return false;
    }
    tables_.push_back(std::move(table));
    return true;
}

}  // namespace store
