#include "tools/district/import/apply/tablewriter.h"

#include <algorithm>

#include <fmt/format.h>

namespace tools::district {

namespace {

const store::Column* counterOf(const store::Table& table) {
    const auto found =
        std::ranges::find(table.columns, store::ColumnKind::Counter, &store::Column::kind);
    return found == table.columns.end() ? nullptr : &*found;
}

}  // namespace

bool TableWriter::isAudited(const StoredTable& table) const {
    return !audit_.isKept && table.table().find("ChangedBy") != nullptr;
}

store::Statement& TableWriter::prepared(const StoredTable& table, const std::string& sql) {
    auto& statement = statements_[sql];
    if (statement == nullptr) {
        statement = fileOf(table).prepare(sql);
    }
    return *statement;
}

std::int64_t TableWriter::add(const StoredTable& table,
                              std::span<const store::Column* const> columns,
                              std::span<const base::Value> values) {
    std::vector<const store::Column*> all(columns.begin(), columns.end());
    std::vector<base::Value> cells(values.begin(), values.end());
    if (isAudited(table)) {
        for (const auto& [column, value] : {std::pair{"CreatedBy", base::Value(audit_.user)},
                                            {"CREATEDDT", audit_.now},
                                            {"ChangedBy", audit_.user},
                                            {"changeddt", audit_.now}}) {
            all.push_back(table.table().find(column));
            cells.push_back(value);
        }
    }
    const store::Column* counter = counterOf(table.table());
    const auto given = std::ranges::find(all, counter);
    if (counter == nullptr || given != all.end()) {
        insert(table, all, cells);
        return counter == nullptr
                   ? 0
                   : cells[static_cast<std::size_t>(given - all.begin())].asInteger();
    }
    return addCounted(table, *counter, std::move(all), std::move(cells));
}

/// The store gives the first new row its number, the others count on from there: nobody else writes
/// meanwhile.
std::int64_t TableWriter::addCounted(const StoredTable& table, const store::Column& counter,
                                     std::vector<const store::Column*> columns,
                                     std::vector<base::Value> values) {
    auto& last = lastNumbers_[table.table().name];
    if (last == 0) {
        std::vector<store::ColumnValue> cells;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (!values[i].isNull()) {
                cells.push_back({columns[i], values[i]});
            }
        }
        store::Database& file = fileOf(table);
        last = file.insert(*file.catalog().find(table.table().name), cells).asInteger();
        return last;
    }
    columns.push_back(&counter);
    values.emplace_back(++last);
    insert(table, columns, values);
    return last;
}

void TableWriter::insert(const StoredTable& table, std::span<const store::Column* const> columns,
                         std::span<const base::Value> values) {
    std::string names;
    std::string places;
    for (const store::Column* column : columns) {
        names += fmt::format("{}\"{}\"", names.empty() ? "" : ", ", column->name);
        places += places.empty() ? "?" : ", ?";
    }
    store::Statement& statement = prepared(table, fmt::format("INSERT INTO \"{}\" ({}) VALUES ({})",
                                                              table.table().name, names, places));
    for (std::size_t i = 0; i < values.size(); ++i) {
        statement.bind(static_cast<int>(i), values[i]);
    }
    statement.step();
    statement.reset();
}

void TableWriter::change(const StoredTable& table, std::int64_t row,
                         std::span<const store::Column* const> columns,
                         std::span<const base::Value> values) {
    std::string places;
    std::vector<base::Value> bound;
    const auto set = [&](std::string_view column, std::string_view expression,
                         const base::Value& value) {
        places += fmt::format("{}\"{}\" = {}", places.empty() ? "" : ", ", column, expression);
        bound.push_back(value);
    };
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (isAudited(table) && columns[i]->name == "ACTIVE") {
            set("STATUSCHGDT", "CASE WHEN ACTIVE = ? THEN STATUSCHGDT ELSE ? END", values[i]);
            bound.emplace_back(audit_.now);
        }
        set(columns[i]->name, "?", values[i]);
    }
    if (isAudited(table)) {
        set("ChangedBy", "?", audit_.user);
        set("changeddt", "?", audit_.now);
    }
    bound.emplace_back(row);
    store::Statement& statement =
        prepared(table, fmt::format("UPDATE \"{}\" SET {} WHERE {} = ?", table.table().name, places,
                                    fileOf(table).catalog().find(table.table().name)->rowKey));
    for (std::size_t i = 0; i < bound.size(); ++i) {
        statement.bind(static_cast<int>(i), bound[i]);
    }
    statement.step();
    statement.reset();
}

void TableWriter::remove(const StoredTable& table, std::int64_t row) {
    store::Statement& statement =
        prepared(table, fmt::format("DELETE FROM \"{}\" WHERE {} = ?", table.table().name,
                                    fileOf(table).catalog().find(table.table().name)->rowKey));
    statement.bind(0, row);
    statement.step();
    statement.reset();
}

}  // namespace tools::district
