#include "tools/district/import/plan/storedtable.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/district/import/plan/values.h"

namespace tools::district {

StoredTable::StoredTable(data::DatabaseFile file, const store::Table& table,
                         std::vector<std::string> key)
    : file_(file), table_(table), key_(std::move(key)) {
    static_cast<void>(numberOfNote(""));
    mayRepeat_ = table_.key.empty() && key_.size() == table_.columns.size();
    for (const std::string& column : key_) {
        keyColumns_.push_back(table_.find(column));
    }
}

void StoredTable::compare(const std::vector<std::string>& columns) {
    for (const std::string& name : columns) {
        const store::Column* column = table_.find(name);
        if (std::ranges::find(compared_, column) == compared_.end()) {
            compared_.push_back(column);
        }
    }
}

void StoredTable::read(store::Database& database) {
    const store::Table* stored = database.catalog().find(table_.name);
    std::string columns = stored->rowKey;
    for (const auto* list : {&keyColumns_, &compared_}) {
        for (const store::Column* column : *list) {
            columns += fmt::format(", \"{}\"", column->name);
        }
    }
    if (!noteColumn_.empty()) {
        columns += fmt::format(", \"{}\"", noteColumn_);
    }
    const auto rows = database.prepare(fmt::format("SELECT {} FROM \"{}\"", columns, table_.name));
    while (rows->step()) {
        readRow(*rows, keyColumns_.size());
    }
}

void StoredTable::readRow(const store::Statement& row, std::size_t keyColumns) {
    int place = 1;
    std::vector<base::Value> key;
    key.reserve(keyColumns);
    for (const store::Column* column : keyColumns_) {
        key.push_back(storedValue(row.cell(place++), column->kind));
    }
    std::string text;
    for (const store::Column* column : compared_) {
        appendDigestText(row.cell(place++), column->kind, text);
    }
    std::string whole = keyText(key);
    while (rows_.find(whole) != KeyMap::None && mayRepeat(key)) {
        whole += '+';
    }
    if (const auto number = rows_.find(whole); number != KeyMap::None) {
        rows_[number].state = KeyMap::State::Several;
        return;
    }
    rows_.add(whole,
              {.row = row.integer(0),
               .digest = digestOf(text),
               .note = noteColumn_.empty() ? std::uint32_t{0} : numberOfNote(row.text(place))});
}

std::string StoredTable::keyText(std::vector<base::Value> values) const {
    if (tidy_) {
        tidy_(values);
    }
    std::string text;
    for (const base::Value& value : values) {
        appendKeyText(value, text);
    }
    return text;
}

std::uint64_t StoredTable::digest(std::span<const base::Value> values) const {
    std::string text;
    for (std::size_t i = 0; i < values.size(); ++i) {
        appendDigestText(values[i], compared_[i]->kind, text);
    }
    return digestOf(text);
}

std::uint32_t StoredTable::numberOfNote(std::string_view note) {
    const auto [place, isNew] =
        noteNumbers_.try_emplace(std::string(note), static_cast<std::uint32_t>(notes_.size()));
    if (isNew) {
        notes_.push_back(&place->first);
    }
    return place->second;
}

}  // namespace tools::district
