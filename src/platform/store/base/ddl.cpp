#include "platform/store/base/ddl.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/store/base/database.h"

namespace store {

namespace {

void requireColumns(const Table& table, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        if (table.find(name) == nullptr) {
            throw StoreError(Fault::Statement,
                             fmt::format("Table {} has no column {}.", table.name, name));
        }
    }
}

}  // namespace

std::string quoted(std::string_view name) {
    std::string result = "\"";
    for (const char c : name) {
        result.append(c == '"' ? 2 : 1, c);
    }
    return result + '"';
}

std::string quotedList(const std::vector<std::string>& names) {
    return base::joined(names, ", ", quoted);
}

void requireSoundKey(const Table& table) {
    requireColumns(table, table.key);
    for (const Column& column : table.columns) {
        if (column.kind == ColumnKind::Counter &&
            (table.key.size() != 1 || !base::equalsNoCase(table.key.front(), column.name))) {
            throw StoreError(Fault::Statement,
                             fmt::format("The counter {} must be the only key of table {}.",
                                         column.name, table.name));
        }
    }
}

bool hasWholeKey(const Table& table) {
    if (table.key.size() != 1) {
        return false;
    }
    const ColumnKind kind = table.find(table.key.front())->kind;
    return kind == ColumnKind::Counter || kind == ColumnKind::Integer;
}

void requireAddable(const Table& table, const Column& column) {
    const bool hasValue =
        column.nullable || column.kind == ColumnKind::YesNo || !column.defaultSql.empty();
    if (!hasValue || column.kind == ColumnKind::Counter) {
        throw StoreError(Fault::Statement,
                         fmt::format("Table {} lacks its column {}, which cannot be made up.",
                                     table.name, column.name));
    }
}

std::vector<Index> besideKey(const Table& table, const std::vector<Index>& indexes) {
    std::vector<Index> result;
    for (const Index& index : indexes) {
        requireColumns(table, index.columns);
    }
    std::ranges::copy_if(indexes, std::back_inserter(result), [&](const Index& index) {
        return !std::ranges::equal(
            index.columns, table.key,
            [](const auto& one, const auto& other) { return base::equalsNoCase(one, other); });
    });
    return result;
}

std::string nameOf(const Index& index, const Table& table) {
    std::string name = "index_" + table.name;
    for (const std::string& column : index.columns) {
        name += "_" + column;
    }
    return name;
}

}  // namespace store
