#include "tools/district/make/tablefile.h"

#include <fmt/format.h>

namespace tools::district {

RowInserter::RowInserter(store::Database& database, const store::Table& table,
                         const std::vector<std::string>& columns) {
    std::string names;
    std::string places;
    for (const std::string& column : columns) {
        names += fmt::format("{}\"{}\"", names.empty() ? "" : ", ", column);
        places += places.empty() ? "?" : ", ?";
    }
    statement_ = database.prepare(
        fmt::format("INSERT INTO \"{}\" ({}) VALUES ({})", table.name, names, places));
}

void RowInserter::add(const std::vector<base::Value>& values) {
    int place = 0;
    for (const base::Value& value : values) {
        statement_->bind(place++, value);
    }
    finish();
}

void RowInserter::bindText(int place, std::string_view text) { statement_->bind(place, text); }

void RowInserter::bindValue(int place, const base::Value& value) { statement_->bind(place, value); }

void RowInserter::finish() {
    statement_->step();
    statement_->reset();
}

TableFile::TableFile(const Folders& folders, data::DatabaseFile file)
    : file_(file), database_(store::createFile(folders.database(file).string())) {
    database_->setDurability(store::Durability::Crash);
    database_->begin();
    for (store::Table table : data::tablesOf(file)) {
        table.indexes.clear();
        database_->create(table);
    }
}

RowInserter TableFile::into(const std::string& table, const std::vector<std::string>& columns) {
    return {*database_, *database_->catalog().find(table), columns};
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
