#include "platform/ado/rowedit.h"

#include <fmt/format.h>

#include "platform/ado/enums.h"
#include "platform/ado/putoff.h"
#include "platform/base/error.h"
#include "platform/store/base/cellvalue.h"

namespace ado {

namespace {

[[noreturn]] void raiseNotUpdatable(const std::string& why) {
    throw base::RunTimeError(errors::NotUpdatable, why);
}

}  // namespace

const RowLayout& RowEdit::layout() const {
    return cursor_.plan().layout(session_.database().catalog());
}

void RowEdit::requireUpdatable() const {
    if (!cursor_.plan().translation().updatable) {
        raiseNotUpdatable("The records of this recordset can only be read.");
    }
}

/// The current row's key in a base table; nothing where an outer join found no row.
std::optional<std::int64_t> RowEdit::keyOf(int table) const {
    const int column = layout().table(table).keyColumn;
    const store::Cell cell = column < 0 ? store::Cell() : cursor_.cell(column);
    return cell.type == store::CellType::Null ? std::nullopt : std::optional(cell.integer);
}

const base::Value* RowEdit::knownValue(int column) const {
    const RowLayout::Column& place = layout().column(column);
    const auto key = known_.empty() || place.table < 0 ? std::nullopt : keyOf(place.table);
    const auto row = key ? known_.find({place.table, *key}) : known_.end();
    if (row == known_.end()) {
        return nullptr;
    }
    const auto value = row->second.find(place.first);
    return value == row->second.end() ? nullptr : &value->second;
}

store::Cell RowEdit::fetchedCell(int column) const {
    const base::Value* known = knownValue(column);
    return known != nullptr ? cellOf(*known) : cursor_.cell(column);
}

store::Cell RowEdit::newCell(int column) const {
    const store::Column* described = layout().column(column).column;
    if (described == nullptr) {
        return {};
    }
    auto at = defaults_.find(column);
    if (at == defaults_.end()) {
        at = defaults_.emplace(column, session_.database().defaultOf(*described)).first;
    }
    return cellOf(at->second);
}

store::Cell RowEdit::cell(int column) const {
    if (!pending_.empty()) {
        const auto set = pending_.find(layout().column(column).first);
        if (set != pending_.end()) {
            return cellOf(set->second);
        }
    }
    return adding_ ? newCell(column) : fetchedCell(column);
}

void RowEdit::set(int column, const base::Value& value) {
    requireUpdatable();
    const RowLayout::Column& place = layout().column(column);
    const std::string& name = cursor_.plan().nameOf(column);
    if (place.column == nullptr || layout().table(place.table).keyColumn < 0) {
        raiseNotUpdatable(fmt::format("{} cannot be written through this recordset.", name));
    }
    if (place.column->kind == store::ColumnKind::Counter) {
        raiseNotUpdatable(
            fmt::format("{} is numbered by the database and cannot be written.", name));
    }
    if (!adding_ && !keyOf(place.table)) {
        raiseNotUpdatable(fmt::format("{} cannot be written: this record has no row of table {}.",
                                      name, layout().table(place.table).table->name));
    }
    pending_[place.first] = storedValue(place.column->kind, value);
}

void RowEdit::beginAdding() {
    requireUpdatable();
    cancel();
    adding_ = true;
}

void RowEdit::cancel() {
    adding_ = false;
    pending_.clear();
    defaults_.clear();
}

std::map<int, RowEdit::Values> RowEdit::changesByTable() const {
    std::map<int, Values> changes;
    for (const auto& [column, value] : pending_) {
        if (adding_ || !(store::storedValue(fetchedCell(column)) == value)) {
            changes[layout().column(column).table].emplace(column, value);
        }
    }
    return changes;
}

std::vector<store::ColumnValue> RowEdit::named(const Values& values) const {
    std::vector<store::ColumnValue> result;
    result.reserve(values.size());
    for (const auto& [column, value] : values) {
        result.push_back({layout().column(column).column, value});
    }
    return result;
}

store::FetchedRow RowEdit::fetchedRow(int table) const {
    const RowLayout::BaseTable& base = layout().table(table);
    store::FetchedRow row{base.table, *keyOf(table), {}};
    row.values.reserve(base.columns.size());
    for (const int column : base.columns) {
        row.values.push_back(
            {layout().column(column).column, store::storedValue(fetchedCell(column))});
    }
    return row;
}

void RowEdit::remember(int table, std::int64_t key, const Values& values) {
    Values& known = known_[{table, key}];
    for (const auto& [column, value] : values) {
        known[column] = value;
    }
}

void RowEdit::writeChanges(const std::map<int, Values>& changes) {
    for (const auto& [table, values] : changes) {
        session_.update(fetchedRow(table), named(values), source_);
    }
}

void RowEdit::write() {
    if (adding_) {
        insert();
        return;
    }
    session_.beforeWrite();
    const auto changes = changesByTable();
    if (changes.size() > 1) {
        RollbackUnlessKept together(session_);
        writeChanges(changes);
        together.keep();
    } else {
        writeChanges(changes);
    }
    for (const auto& [table, values] : changes) {
        remember(table, *keyOf(table), values);
    }
    cancel();
}

/// The one table that rows are added to and deleted from.
int RowEdit::soleTable() const {
    const int table = layout().soleTable();
    if (table < 0) {
        raiseNotUpdatable("Records of several tables cannot be added or deleted as one.");
    }
    return table;
}

void RowEdit::insert() {
    const auto changes = changesByTable();
    const int table = changes.size() == 1 ? changes.begin()->first : soleTable();
    const std::vector<store::ColumnValue> values =
        changes.empty() ? std::vector<store::ColumnValue>() : named(changes.begin()->second);
    session_.writePutOff();
    session_.beforeWrite();
    showInserted(table, session_.database().insert(*layout().table(table).table, values));
    cancel();
}

std::optional<RowEdit::Values> RowEdit::readRow(int table, std::int64_t key) const {
    const RowLayout::BaseTable& base = layout().table(table);
    std::vector<store::ColumnValue> read;
    for (const int column : base.columns) {
        read.push_back({layout().column(column).column, {}});
    }
    if (!session_.database().read(*base.table, key, read)) {
        return std::nullopt;
    }
    Values values;
    for (std::size_t i = 0; i < read.size(); ++i) {
        values.emplace(base.columns[i], read[i].value);
    }
    return values;
}

/// The new row as the store completed it; columns of other tables are Null in it.
void RowEdit::showInserted(int table, const base::Value& key) {
    std::vector<base::Value> row(static_cast<std::size_t>(layout().width()));
    const auto values = readRow(table, key.asInteger()).value_or(Values());
    for (int column = 0; column < layout().columnCount(); ++column) {
        const RowLayout::Column& place = layout().column(column);
        const auto at = values.find(place.first);
        if (place.table == table && at != values.end()) {
            row[static_cast<std::size_t>(column)] = at->second;
        }
    }
    row[static_cast<std::size_t>(layout().table(table).keyColumn)] = key;
    cursor_.append(row);
}

void RowEdit::remove() {
    requireUpdatable();
    const int table = soleTable();
    session_.writePutOff();
    session_.beforeWrite();
    const store::FetchedRow row = fetchedRow(table);
    requireWritten(session_.database().remove(row), row.table->name);
    cursor_.markRemoved();
}

void RowEdit::readAgain() {
    requireUpdatable();
    session_.writePutOff();
    for (int table = 0; table < static_cast<int>(layout().tables().size()); ++table) {
        if (const auto key = keyOf(table)) {
            const auto values = readRow(table, *key);
            if (!values) {
                requireWritten(store::RowOutcome::Deleted, layout().table(table).table->name);
            }
            remember(table, *key, *values);
        }
    }
}

}  // namespace ado
