#include "tools/district/make/tablefile.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "data/schema/version.h"

namespace tools::district {

void RowInserter::addRow(std::initializer_list<Cell> cells) {
    if (statement_ == nullptr) {
        std::vector<std::string> columns;
        for (const Cell& cell : cells) {
            columns.emplace_back(cell.column);
        }
        prepare(columns);
    }
    int place = 0;
    for (const Cell& cell : cells) {
        statement_->bind(place++, cell.value);
    }
    finish();
}

void RowInserter::addRow(const std::vector<std::string>& columns,
                         const std::vector<base::Value>& values) {
    if (statement_ == nullptr) {
        prepare(columns);
    }
    int place = 0;
    for (const base::Value& value : values) {
        statement_->bind(place++, value);
    }
    finish();
}

void RowInserter::prepare(const std::vector<std::string>& columns) {
    statement_ = database_.prepare(
        fmt::format("INSERT INTO \"{}\" (\"{}\") VALUES ({})", table_, fmt::join(columns, "\", \""),
                    fmt::join(std::vector<std::string_view>(columns.size(), "?"), ", ")));
}

void RowInserter::finish() {
    statement_->step();
    statement_->reset();
}

TableFile::TableFile(const Folders& folders, data::DatabaseFile file)
    : file_(file), database_(store::createFile(folders.database(file).string())) {
    database_->setDurability(store::Durability::Crash);
    database_->begin();
    database_->setMark(data::markOf(file));
    for (store::Table table : data::tablesOf(file)) {
        table.indexes.clear();
        database_->create(table);
    }
}

void TableFile::finish(Progress& progress) {
    const auto& tables = data::tablesOf(file_);
    progress.begin(fmt::format("Indexing {}", data::fileName(file_)),
                   static_cast<std::int64_t>(tables.size()));
    for (const store::Table& table : tables) {
        database_->createIndexes(table);
        progress.step();
    }
    database_->commit();
    database_->checkpoint();
    database_.reset();
}

}  // namespace tools::district
