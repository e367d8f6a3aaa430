#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/base/notcopied.h"
#include "platform/store/base/database.h"
#include "platform/store/sqlite/rows.h"

namespace store::sqlite {

/// Who else may open a file meanwhile.
enum class Sharing { Shared, Alone };

/// A database file opened by the engine.
class SqliteDatabase final : public Database, private base::NotCopied {
public:
    /// Opens an existing file, see store::open.
    SqliteDatabase(const std::string& path, int lockTimeoutMs, Sharing sharing = Sharing::Shared);
    ~SqliteDatabase() override;

    [[nodiscard]] const Catalog& catalog() const override { return catalog_; }
    void requireWritable() const override;
    [[nodiscard]] std::vector<std::string> damages() override;
    [[nodiscard]] FileMark mark() const override;
    void setMark(FileMark mark) override;
    void link(const std::string& path) override;

    std::unique_ptr<Statement> prepare(std::string_view sql) override;
    std::int64_t execute(std::string_view sql) override;
    [[nodiscard]] std::int64_t changedRows() const override;
    [[nodiscard]] std::int64_t changeMark() const override;

    RowOutcome update(const FetchedRow& row, const std::vector<ColumnValue>& changes) override;
    RowOutcome remove(const FetchedRow& row) override;
    base::Value insert(const Table& table, const std::vector<ColumnValue>& values) override;
    bool read(const Table& table, const base::Value& key,
              std::vector<ColumnValue>& columns) override;
    base::Value defaultOf(const Column& column) override;
    std::unique_ptr<RowLoader> loader(const Table& table) override;

    [[nodiscard]] bool inTransaction() const override;
    void begin() override;
    void commit() override;
    void rollback() override;
    void beginReading() override;

    void setDurability(Durability durability) override;
    void setLockTimeout(int milliseconds) override;
    void checkpoint() override;
    void registerFunction(const Function& function) override;
    void create(const Table& table) override;
    void createIndexes(const Table& table) override;
    std::vector<std::string> complete(const Table& table) override;
    void copyTo(const std::string& path, const CopyProgress& progress) override;

private:
    void readCatalog();
    [[nodiscard]] std::int32_t headerNumber(std::string_view name) const;
    void addTables(const std::string& attachedAs, const std::string& path);
    void watch(const std::string& attachedAs, const std::string& path, Sharing sharing);

    Source source_;
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle_;
    Rows rows_;
    Catalog catalog_;
    std::string ownTable_;  ///< any table of the file itself; empty where there is none
    std::vector<std::pair<std::string, std::string>> linked_;  ///< name in SQL and path
};

/// Opens the file at `path` with the engine, with the settings that every connection has, after
/// looking at its header. Raises StoreError.
void openFile(Source& source, std::unique_ptr<sqlite3, int (*)(sqlite3*)>& handle, Sharing sharing);

/// Creates an empty file that only its owner reads; raises StoreError where one is there.
void createEmpty(const std::string& path);

/// Raises StoreError where the file lies on a network file system.
void refuseNetwork(const std::string& path);

/// Looks at the header of an attached file; raises StoreError where it is no sound database.
void checkHeader(const Source& source, const std::string& attachedAs, const std::string& path);

}  // namespace store::sqlite
