#include "tools/district/import/apply/tablewriter.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/base/text.h"

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

std::vector<store::ColumnValue> TableWriter::auditOf(const StoredTable& table) const {
    if (!isAudited(table)) {
        return {};
    }
    const auto column = [&](const char* name) { return table.table().find(name); };
    return {{column("CreatedBy"), audit_.user},
            {column("CREATEDDT"), audit_.now},
            {column("ChangedBy"), audit_.user},
            {column("changeddt"), audit_.now}};
}

TableWriter::Insertion TableWriter::prepareInsertion(
    const StoredTable& table, std::span<const store::Column* const> columns) {
    Insertion into{.table = &table,
                   .given = {columns.begin(), columns.end()},
                   .statement = nullptr,
                   .counter = counterOf(table.table())};
    into.counterGiven =
        static_cast<std::size_t>(std::ranges::find(columns, into.counter) - columns.begin());
    auto all = into.given;
    for (const store::ColumnValue& cell : auditOf(table)) {
        all.push_back(cell.column);
    }
    if (into.counter != nullptr && into.counterGiven == columns.size()) {
        all.push_back(into.counter);
    }
    const auto names = base::joined(
        all, ", ", [](const auto* column) { return fmt::format("\"{}\"", column->name); });
    const auto places = base::joined(all, ", ", [](const auto*) { return "?"; });
    into.statement = fileOf(table).prepare(
        fmt::format("INSERT INTO \"{}\" ({}) VALUES ({})", table.table().name, names, places));
    return into;
}

TableWriter::Insertion& TableWriter::insertionOf(const StoredTable& table,
                                                 std::span<const store::Column* const> columns) {
    const auto found = std::ranges::find_if(insertions_, [&](const Insertion& one) {
        return one.table == &table && std::ranges::equal(one.given, columns);
    });
    return found != insertions_.end() ? *found
                                      : insertions_.emplace_back(prepareInsertion(table, columns));
}

/// The store gives the first new row of a table its number, the others count on from there: nobody
/// else writes meanwhile.
std::int64_t TableWriter::add(const StoredTable& table,
                              std::span<const store::Column* const> columns,
                              std::span<const base::Value> values) {
    Insertion& into = insertionOf(table, columns);
    const bool isNumbered = into.counter != nullptr && into.counterGiven == columns.size();
    auto& last = lastNumbers_[&table.table()];
    if (isNumbered && last == 0) {
        return last = addFirst(into, values);
    }
    int place = 0;
    for (const base::Value& value : values) {
        into.statement->bind(place++, value);
    }
    for (const store::ColumnValue& cell : auditOf(table)) {
        into.statement->bind(place++, cell.value);
    }
    if (isNumbered) {
        into.statement->bind(place, ++last);
    }
    into.statement->step();
    into.statement->reset();
    return isNumbered ? last : into.counter == nullptr ? 0 : values[into.counterGiven].asInteger();
}

std::int64_t TableWriter::addFirst(const Insertion& into, std::span<const base::Value> values) {
    std::vector<store::ColumnValue> cells = auditOf(*into.table);
    for (std::size_t i = 0; i < values.size(); ++i) {
        cells.push_back({into.given[i], values[i]});
    }
    store::Database& file = fileOf(*into.table);
    return file.insert(*file.catalog().find(into.table->table().name), cells).asInteger();
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
