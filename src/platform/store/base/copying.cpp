#include "platform/store/base/copying.h"

#include <limits>
#include <vector>

#include <fmt/format.h>

#include "platform/store/base/cellvalue.h"
#include "platform/store/base/ddl.h"

namespace store {

namespace {

/// Reads a table row by row, a bounded number of rows at a time.
class TableReader {
public:
    TableReader(Database& database, const Table& wanted)
        : table_(found(database, wanted)), width_(wanted.columns.size()) {
        std::string names;
        for (const Column& column : wanted.columns) {
            names += quoted(column.name) + ", ";
        }
        const std::string& key = table_.rowKey;
        next_ =
            database.prepare(fmt::format("SELECT {}{} FROM {} WHERE {} > ? ORDER BY {} LIMIT {}",
                                         names, key, quoted(table_.name), key, key, Most));
        begin();
    }

    /// Puts the next row's values into `row`; false after the last one.
    bool read(std::vector<base::Value>& row) {
        if (!next_->step()) {
            if (read_ < Most) {
                return false;
            }
            begin();
            return read(row);
        }
        ++read_;
        row.resize(width_);
        for (std::size_t i = 0; i < width_; ++i) {
            row[i] = storedValue(next_->cell(static_cast<int>(i)));
        }
        last_ = next_->integer(static_cast<int>(width_));
        return true;
    }

private:
    static constexpr int Most = 10'000;

    static const Table& found(const Database& database, const Table& wanted) {
        const Table* table = database.catalog().find(wanted.name);
        if (table == nullptr || table->rowKey.empty()) {
            throw StoreError(Fault::Statement,
                             fmt::format("The rows of table {} cannot be copied.", wanted.name));
        }
        return *table;
    }

    void begin() {
        next_->reset();
        next_->bind(0, last_);
        read_ = 0;
    }

    const Table& table_;
    std::size_t width_;
    std::unique_ptr<Statement> next_;
    std::int64_t last_ = std::numeric_limits<std::int64_t>::min();
    int read_ = 0;
};

std::string shown(const base::Value& value) {
    return value.isNull() ? "nothing" : fmt::format("\"{}\"", value.asText());
}

}  // namespace

std::int64_t copyRows(Database& from, const Table& table, Database& to) {
    TableReader reader(from, table);
    const auto loader = to.loader(table);
    std::vector<base::Value> row;
    std::int64_t count = 0;
    while (reader.read(row)) {
        loader->add(row);
        ++count;
    }
    loader->finish();
    return count;
}

std::string differenceOf(Database& one, Database& other, const Table& table) {
    TableReader first(one, table);
    TableReader second(other, table);
    std::vector<base::Value> row;
    std::vector<base::Value> twin;
    for (std::int64_t number = 1;; ++number) {
        const bool isThere = first.read(row);
        if (isThere != second.read(twin)) {
            return fmt::format("{} has no row {} on one side", table.name, number);
        }
        if (!isThere) {
            return {};
        }
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (!(row[i] == twin[i])) {
                return fmt::format("row {} of {} has {} and {} in {}", number, table.name,
                                   shown(row[i]), shown(twin[i]), table.columns[i].name);
            }
        }
    }
}

}  // namespace store
