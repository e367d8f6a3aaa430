#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/store/base/database.h"
#include "platform/store/postgres/link.h"
#include "platform/store/postgres/rows.h"

namespace store::postgres {

/// A schema of a database on a server, which stands for a file there.
class PostgresDatabase final : public Database {
public:
    /// Opens what is there, see store::open.
    PostgresDatabase(const std::string& path, int lockTimeoutMs, Link::Sharing sharing);

    [[nodiscard]] const Catalog& catalog() const override { return catalog_; }
    void requireWritable() const override;
    [[nodiscard]] std::vector<std::string> damages() override;
    [[nodiscard]] FileMark mark() const override;
    void setMark(FileMark mark) override;
    void link(const std::string& path) override;

    std::unique_ptr<Statement> prepare(std::string_view sql) override;
    std::int64_t execute(std::string_view sql) override;
    [[nodiscard]] std::int64_t changedRows() const override { return link_.changedRows(); }
    [[nodiscard]] std::int64_t changeMark() const override;

    [[nodiscard]] bool sendsTogether() const override { return true; }
    [[nodiscard]] std::unique_ptr<Fetch> fetchTogether(std::span<Statement* const> reads) override;
    void beginWith(std::span<Statement* const> reads) override;
    bool writeTogether(std::span<const Write> writes, bool commits) override;
    [[nodiscard]] std::int64_t roundTrips() const override { return link_.roundTrips(); }

    RowOutcome update(const FetchedRow& row, const std::vector<ColumnValue>& changes) override;
    RowOutcome remove(const FetchedRow& row) override;
    base::Value insert(const Table& table, const std::vector<ColumnValue>& values) override;
    bool read(const Table& table, const base::Value& key,
              std::vector<ColumnValue>& columns) override;
    base::Value defaultOf(const Column& column) override { return rows_.defaultOf(column); }
    std::unique_ptr<RowLoader> loader(const Table& table) override;

    [[nodiscard]] bool inTransaction() const override { return link_.inUnit(); }
    void begin() override { static_cast<void>(link_.begin()); }
    void commit() override { link_.commit(); }
    void rollback() override { link_.rollback(); }
    void beginReading() override { link_.beginReading(); }

    void setDurability(Durability durability) override;
    void setLockTimeout(int milliseconds) override { link_.setLockTimeout(milliseconds); }
    /// Nothing is to be done: the server brings its log into its tables by itself.
    void checkpoint() override {}
    /// The server has the functions of the dialect itself.
    void registerFunction(const Function&) override {}
    void create(const Table& table) override;
    void createIndexes(const Table& table) override;
    std::vector<std::string> complete(const Table& table) override;
    void announce(const Table& table, const std::string& column);
    [[nodiscard]] bool isAnnounced(const Table& table) const;
    void copyTo(const std::string& path, const CopyProgress& progress) override;

private:
    [[nodiscard]] Call callOf(std::span<const Write> writes, std::vector<Parameter>& parameters);
    void readCatalog();
    void run(const std::vector<std::string>& statements);

    mutable Link link_;
    Rows rows_;
    SharedQueries queries_;
    Catalog catalog_{Engine::Postgres};
    std::vector<std::string> linked_;
};

}  // namespace store::postgres
