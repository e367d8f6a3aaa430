#include "platform/store/postgres/rows.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include <fmt/format.h>

#include "platform/store/base/ddl.h"
#include "platform/store/postgres/statement.h"

namespace store::postgres {

namespace {

constexpr std::size_t MaxPrepared = 100;

void requireKey(const Source& source, const Table& table) {
    if (table.rowKey.empty()) {
        throw StoreError(Fault::Statement,
                         fmt::format("Rows of table {} in \"{}\" cannot be written one by one.",
                                     table.name, source.path));
    }
}

void append(std::vector<Parameter>& parameters, const std::vector<ColumnValue>& values) {
    for (const ColumnValue& item : values) {
        parameters.push_back(untyped(item.value, item.column->kind));
    }
}

Parameter keyOf(const base::Value& key) { return untyped(key, ColumnKind::Integer); }

/// " WHERE rowid = ? AND …" for the row as it was fetched. Letter case counts here, unlike in a
/// planner's comparison.
std::string whereFetched(const FetchedRow& row) {
    std::string text = fmt::format(" WHERE {} = ?", row.table->rowKey);
    for (const ColumnValue& item : row.values) {
        text += fmt::format(" AND {}{} IS NOT DISTINCT FROM ?", quoted(item.column->name),
                            isText(item.column->kind) ? " COLLATE \"C\"" : "");
    }
    return text;
}

std::string updateText(const FetchedRow& row, const std::vector<ColumnValue>& changes) {
    std::string assignments;
    for (const ColumnValue& item : changes) {
        assignments += (assignments.empty() ? "" : ", ") + quoted(item.column->name) + " = ?";
    }
    return fmt::format("UPDATE {} SET {}{}", quoted(row.table->name), assignments,
                       whereFetched(row));
}

bool hasSameColumns(const std::vector<ColumnValue>& one, const std::vector<ColumnValue>& other) {
    return std::ranges::equal(one, other, {}, &ColumnValue::column, &ColumnValue::column);
}

std::string_view arrayTypeOf(ColumnKind kind) {
    switch (kind) {
        case ColumnKind::Integer:
        case ColumnKind::Counter:
            return "bigint[]";
        case ColumnKind::Number:
        case ColumnKind::Single:
            return "float8[]";
        case ColumnKind::YesNo:
            return "boolean[]";
        case ColumnKind::Date:
            return "timestamp[]";
        case ColumnKind::Code:
        case ColumnKind::Text:
            break;
    }
    return "text[]";
}

/// Values of one column of several rows, as the server reads an array.
class Array {
public:
    void add(const Parameter& value) {
        text_ += text_.size() > 1 ? "," : "";
        text_ += value.text ? "\"" : "NULL";
        for (const char c : value.text.value_or("")) {
            text_ += c == '"' || c == '\\' ? "\\" : "";
            text_ += c;
        }
        text_ += value.text ? "\"" : "";
    }
    [[nodiscard]] Parameter whole() const { return {text_ + "}"}; }

private:
    std::string text_ = "{";
};

/// "UPDATE … FROM unnest(?::bigint[], …)": the keys of the rows, the new values, and those fetched.
std::string updateManyText(const FetchedRow& row, const std::vector<ColumnValue>& changes) {
    std::string arrays = "?::bigint[]";
    std::string names = "\"key\"";
    std::string assignments;
    std::string conditions;
    const auto add = [&](const Column& column) {
        const std::string name = fmt::format("\"c{}\"", names.size());
        arrays += fmt::format(", ?::{}", arrayTypeOf(column.kind));
        names += ", " + name;
        return "\"given\"." + name;
    };
    for (const ColumnValue& item : changes) {
        assignments += fmt::format("{}{} = {}", assignments.empty() ? "" : ", ",
                                   quoted(item.column->name), add(*item.column));
    }
    for (const ColumnValue& item : row.values) {
        conditions +=
            fmt::format(" AND \"now\".{}{} IS NOT DISTINCT FROM {}", quoted(item.column->name),
                        isText(item.column->kind) ? " COLLATE \"C\"" : "", add(*item.column));
    }
    return fmt::format(
        "UPDATE {} AS \"now\" SET {} FROM unnest({}) AS \"given\"({}) WHERE \"now\".{} = "
        "\"given\".\"key\"{}",
        quoted(row.table->name), assignments, arrays, names, row.table->rowKey, conditions);
}

std::vector<Parameter> updateParameters(const FetchedRow& row,
                                        const std::vector<ColumnValue>& changes) {
    std::vector<Parameter> parameters;
    append(parameters, changes);
    parameters.push_back(keyOf(row.key));
    append(parameters, row.values);
    return parameters;
}

}  // namespace

void Rows::forgetMany() {
    if (prepared_.size() >= MaxPrepared) {
        for (const auto& [text, query] : prepared_) {
            link_.release(query);
        }
        prepared_.clear();
    }
}

Query& Rows::queryOf(const std::string& sql) {
    return prepared_.try_emplace(sql, sql).first->second;
}

Result Rows::run(const std::string& sql, const std::vector<Parameter>& parameters) {
    forgetMany();
    return link_.run(queryOf(sql), parameters);
}

RowOutcome Rows::outcomeOf(const FetchedRow& row) {
    if (link_.changedRows() > 0) {
        return RowOutcome::Written;
    }
    std::vector<ColumnValue> nothing;
    return read(*row.table, row.key, nothing) ? RowOutcome::Changed : RowOutcome::Deleted;
}

RowOutcome Rows::update(const FetchedRow& row, const std::vector<ColumnValue>& changes) {
    requireKey(link_.source(), *row.table);
    static_cast<void>(run(updateText(row, changes), updateParameters(row, changes)));
    return outcomeOf(row);
}

Query& Rows::updateOrFail(const FetchedRow& row, const std::vector<ColumnValue>& changes,
                          std::vector<Parameter>& parameters) {
    requireKey(link_.source(), *row.table);
    parameters = updateParameters(row, changes);
    return queryOf(
        fmt::format(R"(WITH "written" AS ({} RETURNING 1) SELECT 1 / count(*) FROM "written")",
                    updateText(row, changes)));
}

Query& Rows::updateManyOrFail(std::span<const Write> writes, std::vector<Parameter>& parameters) {
    const Write& first = writes.front();
    requireKey(link_.source(), *first.row->table);
    std::vector<Array> arrays(1 + first.changes->size() + first.row->values.size());
    for (const Write& write : writes) {
        std::size_t place = 0;
        arrays[place++].add(keyOf(write.row->key));
        for (const auto* values : {write.changes, &write.row->values}) {
            for (const ColumnValue& item : *values) {
                arrays[place++].add(untyped(item.value, item.column->kind));
            }
        }
    }
    std::ranges::transform(arrays, std::back_inserter(parameters), &Array::whole);
    return queryOf(
        fmt::format("WITH \"written\" AS ({} RETURNING 1) SELECT 1 / (count(*) = "
                    "cardinality($1))::int FROM \"written\"",
                    updateManyText(*first.row, *first.changes)));
}

std::size_t rowsAlike(std::span<const Write> writes) {
    const Write& first = writes.front();
    const auto other = std::ranges::find_if_not(writes, [&](const Write& one) {
        return one.statement == nullptr && one.row->table == first.row->table &&
               hasSameColumns(*one.changes, *first.changes) &&
               hasSameColumns(one.row->values, first.row->values);
    });
    return static_cast<std::size_t>(other - writes.begin());
}

RowOutcome Rows::remove(const FetchedRow& row) {
    requireKey(link_.source(), *row.table);
    std::vector<Parameter> parameters{keyOf(row.key)};
    append(parameters, row.values);
    static_cast<void>(run(
        fmt::format("DELETE FROM {}{}", quoted(row.table->name), whereFetched(row)), parameters));
    return outcomeOf(row);
}

base::Value Rows::insert(const Table& table, const std::vector<ColumnValue>& values) {
    requireKey(link_.source(), table);
    std::string names;
    std::string places;
    for (const ColumnValue& item : values) {
        names += (names.empty() ? "" : ", ") + quoted(item.column->name);
        places += places.empty() ? "?" : ", ?";
    }
    std::vector<Parameter> parameters;
    append(parameters, values);
    const std::string what =
        values.empty() ? "DEFAULT VALUES" : fmt::format("({}) VALUES ({})", names, places);
    const Result made =
        run(fmt::format("INSERT INTO {} {} RETURNING {}", quoted(table.name), what, table.rowKey),
            parameters);
    return storedOf(made.get(), 0, 0);
}

bool Rows::read(const Table& table, const base::Value& key, std::vector<ColumnValue>& columns) {
    requireKey(link_.source(), table);
    std::string names;
    for (const ColumnValue& item : columns) {
        names += ", " + quoted(item.column->name);
    }
    const Result row =
        run(fmt::format("SELECT 1{} FROM {} WHERE {} = ?", names, quoted(table.name), table.rowKey),
            {keyOf(key)});
    if (library().rowCount(row.get()) == 0) {
        return false;
    }
    int place = 1;
    for (ColumnValue& item : columns) {
        item.value = storedOf(row.get(), 0, place++);
    }
    return true;
}

base::Value Rows::defaultOf(const Column& column) {
    if (column.defaultSql.empty()) {
        return {};
    }
    const Result row = run("SELECT " + column.defaultSql, {});
    return storedOf(row.get(), 0, 0);
}

}  // namespace store::postgres
