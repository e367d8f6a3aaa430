#include "tools/district/make/tablefile.h"

#include <fmt/format.h>

#include "data/schema/announcing.h"
#include "data/schema/version.h"
#include "platform/store/open/open.h"

namespace tools::district {

void RowInserter::addRow(std::span<const Cell> cells) {
    if (statement_ == nullptr) {
        prepare(cells);
    }
    int place = 0;
    for (const Cell& cell : cells) {
        statement_->bind(place++, cell.value);
    }
    statement_->step();
    statement_->reset();
}

void RowInserter::prepare(std::span<const Cell> cells) {
    std::string columns;
    std::string places;
    for (const Cell& cell : cells) {
        columns += fmt::format("{}\"{}\"", columns.empty() ? "" : ", ", cell.column);
        places += places.empty() ? "?" : ", ?";
    }
    statement_ = database_.prepare(
        fmt::format("INSERT INTO \"{}\" ({}) VALUES ({})", table_, columns, places));
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
    data::announceRuns(*database_, file_);
    database_->commit();
    database_->checkpoint();
    database_.reset();
}

}  // namespace tools::district
