#include "platform/store/sqlite/rows.h"

#include <fmt/format.h>

#include "platform/base/notcopied.h"
#include "platform/base/text.h"
#include "platform/store/sqlite/ddl.h"

namespace store::sqlite {

namespace {

constexpr std::size_t MaxPrepared = 100;

/// Puts a kept statement back to its start, however the block is left.
class InUse : private base::NotCopied {
public:
    explicit InUse(PreparedStatement& statement) : statement_(statement) {}
    ~InUse() { statement_.reset(); }

    void bindNext(const base::Value& value) { statement_.bind(next_++, value); }
    void bindNext(const std::vector<ColumnValue>& values) {
        for (const ColumnValue& item : values) {
            bindNext(item.value);
        }
    }

private:
    PreparedStatement& statement_;
    int next_ = 0;
};

void requireKey(const Source& source, const Table& table) {
    if (table.rowKey.empty()) {
        throw StoreError(Fault::Statement,
                         fmt::format("Rows of table {} in \"{}\" cannot be written one by one.",
                                     table.name, source.path));
    }
}

/// " WHERE rowid = ? AND …" for the row as it was fetched. Letter case counts here, unlike in a
/// planner's comparison.
std::string whereFetched(const FetchedRow& row) {
    std::string text = fmt::format(" WHERE {} = ?", row.table->rowKey);
    for (const ColumnValue& item : row.values) {
        text += fmt::format(" AND {} COLLATE BINARY IS ?", quoted(item.column->name));
    }
    return text;
}

}  // namespace

PreparedStatement& Rows::prepared(const std::string& sql) {
    const auto known = prepared_.find(sql);
    if (known != prepared_.end()) {
        return *known->second;
    }
    if (prepared_.size() >= MaxPrepared) {
        prepared_.clear();
    }
    auto made = std::make_unique<PreparedStatement>(source_, sql);
    return *prepared_.emplace(sql, std::move(made)).first->second;
}

RowOutcome Rows::outcomeOf(const FetchedRow& row) {
    if (sqlite3_changes(source_.handle) > 0) {
        return RowOutcome::Written;
    }
    std::vector<ColumnValue> nothing;
    return read(*row.table, row.key, nothing) ? RowOutcome::Changed : RowOutcome::Deleted;
}

RowOutcome Rows::update(const FetchedRow& row, const std::vector<ColumnValue>& changes) {
    requireKey(source_, *row.table);
    const auto assignments = base::joined(
        changes, ", ", [](const auto& item) { return quoted(item.column->name) + " = ?"; });
    auto& statement = prepared(
        fmt::format("UPDATE {} SET {}{}", quoted(row.table->name), assignments, whereFetched(row)));
    {
        InUse use(statement);
        use.bindNext(changes);
        use.bindNext(row.key);
        use.bindNext(row.values);
        statement.step();
    }
    return outcomeOf(row);
}

RowOutcome Rows::remove(const FetchedRow& row) {
    requireKey(source_, *row.table);
    auto& statement =
        prepared(fmt::format("DELETE FROM {}{}", quoted(row.table->name), whereFetched(row)));
    {
        InUse use(statement);
        use.bindNext(row.key);
        use.bindNext(row.values);
        statement.step();
    }
    return outcomeOf(row);
}

base::Value Rows::insert(const Table& table, const std::vector<ColumnValue>& values) {
    requireKey(source_, table);
    const auto names =
        base::joined(values, ", ", [](const auto& item) { return quoted(item.column->name); });
    const auto places = base::joined(values, ", ", [](const auto&) { return "?"; });
    auto& statement =
        prepared(values.empty() ? fmt::format("INSERT INTO {} DEFAULT VALUES", quoted(table.name))
                                : fmt::format("INSERT INTO {} ({}) VALUES ({})", quoted(table.name),
                                              names, places));
    InUse use(statement);
    use.bindNext(values);
    statement.step();
    return std::int64_t{sqlite3_last_insert_rowid(source_.handle)};
}

bool Rows::read(const Table& table, const base::Value& key, std::vector<ColumnValue>& columns) {
    requireKey(source_, table);
    std::string names;
    for (const ColumnValue& item : columns) {
        names += ", " + quoted(item.column->name);
    }
    auto& statement = prepared(
        fmt::format("SELECT 1{} FROM {} WHERE {} = ?", names, quoted(table.name), table.rowKey));
    InUse use(statement);
    use.bindNext(key);
    if (!statement.step()) {
        return false;
    }
    int place = 1;
    for (ColumnValue& item : columns) {
        item.value = statement.stored(place++);
    }
    return true;
}

base::Value Rows::defaultOf(const Column& column) {
    if (column.defaultSql.empty()) {
        return {};
    }
    auto& statement = prepared("SELECT " + column.defaultSql);
    InUse use(statement);
    return statement.step() ? statement.stored(0) : base::Value();
}

}  // namespace store::sqlite
