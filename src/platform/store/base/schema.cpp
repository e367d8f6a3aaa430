#include "platform/store/base/schema.h"

#include <algorithm>
#include <iterator>
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

bool sameNames(const Index& one, const Index& other) {
    return std::ranges::equal(one.columns, other.columns, base::equalsNoCase);
}

}  // namespace

const Column* Table::find(std::string_view columnName) const {
    return findNamed(columns, columnName);
}

Table lacking(const Table& wanted, const Table* found) {
    if (found == nullptr) {
        return wanted;
    }
    Table missing{.name = wanted.name, .columns = {}};
    std::ranges::copy_if(wanted.columns, std::back_inserter(missing.columns),
                         [&](const Column& one) { return found->find(one.name) == nullptr; });
    std::ranges::copy_if(
        wanted.indexes, std::back_inserter(missing.indexes), [&](const Index& one) {
            return std::ranges::none_of(found->indexes,
                                        [&](const Index& other) { return sameNames(one, other); });
        });
    return missing;
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
