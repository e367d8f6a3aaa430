#include "platform/store/sqlite/database.h"

#include <algorithm>
#include <cstdint>
#include <exception>

#include <fmt/format.h>
#include <sys/stat.h>

#include "platform/base/notcopied.h"
#include "platform/store/sqlite/catalog.h"
#include "platform/store/sqlite/ddl.h"

namespace store::sqlite {

namespace {

/// A function of ours as the engine holds it.
struct Registered {
    Function function;
    const Source& source;
};

void giveResult(sqlite3_context* context, const base::Value& value) {
    if (value.isNull()) {
        sqlite3_result_null(context);
    } else if (value.isDouble()) {
        sqlite3_result_double(context, value.asNumber());
    } else if (value.isInteger()) {
        sqlite3_result_int64(context, value.asInteger());
    } else if (value.isYesNo()) {
        sqlite3_result_int(context, value.asBoolean() ? 1 : 0);
    } else {
        const std::string text = value.isDate() ? value.asDate().iso() : value.heldText();
        sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
}

void callRegistered(sqlite3_context* context, int count, sqlite3_value** values) {
    const auto* registered = static_cast<const Registered*>(sqlite3_user_data(context));
    try {
        std::vector<base::Value> arguments;
        arguments.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            arguments.push_back(plainValue(values[i]));
        }
        giveResult(context, registered->function.call(arguments));
    } catch (const std::exception& e) {
        registered->source.raised = std::current_exception();
        sqlite3_result_error(context, e.what(), -1);
    }
}

void forget(void* registered) { delete static_cast<Registered*>(registered); }

class Loader final : public RowLoader {
public:
    Loader(const Source& source, const Table& table) : insert_(source, statementFor(table)) {}

    void add(std::span<const base::Value> row) override {
        int place = 0;
        for (const base::Value& value : row) {
            insert_.bind(place++, value);
        }
        insert_.step();
        insert_.reset();
    }
    void finish() override {}

private:
    static std::string statementFor(const Table& table) {
        std::string places = "?";
        for (std::size_t i = 1; i < table.columns.size(); ++i) {
            places += ", ?";
        }
        return fmt::format("INSERT INTO {} VALUES ({})", quoted(table.name), places);
    }

    PreparedStatement insert_;
};

/// Undoes what was done since its making unless it is kept.
class SavePoint : private base::NotCopied {
public:
    explicit SavePoint(SqliteDatabase& database) : database_(database) {
        database_.execute("SAVEPOINT creation");
    }
    ~SavePoint() {
        if (!kept_) {
            try {
                database_.execute("ROLLBACK TO creation");
                database_.execute("RELEASE creation");
            } catch (const StoreError&) {  // the engine has rolled back by itself
            }
        }
    }
    void keep() {
        database_.execute("RELEASE creation");
        kept_ = true;
    }

private:
    SqliteDatabase& database_;
    bool kept_ = false;
};

}  // namespace

SqliteDatabase::SqliteDatabase(const std::string& path, int lockTimeoutMs, Sharing sharing)
    : source_{nullptr, path, lockTimeoutMs, nullptr},
      handle_(nullptr, sqlite3_close_v2),
      rows_(source_) {
    openFile(source_, handle_, sharing);
    addTables("main", path);
    watch("main", path, sharing);
}

// What waits in the log of a file that was replaced must not reach the file that stands there now.
SqliteDatabase::~SqliteDatabase() {
    rows_.clear();
    if (!areSameFiles(source_)) {
        sqlite3_db_config(source_.handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    }
}

/// The file and what the engine keeps beside it: whoever writes without the same log and the same
/// shared memory as the others writes for nobody.
void SqliteDatabase::watch(const std::string& attachedAs, const std::string& path,
                           Sharing sharing) {
    bool inMemory = false;
    for (const std::string_view beside : {"", "-wal", "-shm"}) {
        const OpenFile file(path + std::string(beside));
        if (file.wasThere()) {
            source_.files.push_back(file);
            inMemory = beside == "-shm";
        }
    }
    if (inMemory && sharing == Sharing::Shared) {
        source_.contents.emplace_back(source_.handle, attachedAs, path);
    }
}

void SqliteDatabase::requireWritable() const {
    if (sqlite3_db_readonly(source_.handle, "main") == 1 || !isWritable(source_.path)) {
        raiseReadOnly(source_);
    }
}

void SqliteDatabase::addTables(const std::string& attachedAs, const std::string& path) {
    Source source = source_;
    source.path = path;
    for (Table& table : readTables(source, attachedAs)) {
        if (attachedAs == "main" && ownTable_.empty()) {
            ownTable_ = table.name;
        }
        catalog_.add(std::move(table));
    }
}

void SqliteDatabase::link(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        raiseMissing(path);
    }
    refuseNetwork(path);
    const std::string name = fmt::format("linked{}", linked_.size() + 1);
    {
        PreparedStatement attach(source_, "ATTACH ? AS " + quoted(name));
        attach.bind(0, path);
        attach.step();
    }
    try {
        checkHeader(source_, name, path);
        addTables(name, path);
    } catch (...) {
        execute("DETACH " + quoted(name));
        throw;
    }
    linked_.emplace_back(name, path);
    watch(name, path, Sharing::Shared);
}

std::int32_t SqliteDatabase::headerNumber(std::string_view name) const {
    PreparedStatement row(source_, fmt::format("PRAGMA main.{}", name));
    row.step();
    return static_cast<std::int32_t>(row.integer(0));
}

FileMark SqliteDatabase::mark() const {
    return {headerNumber("application_id"), headerNumber("user_version")};
}

std::int64_t SqliteDatabase::changeMark() const { return headerNumber("data_version"); }

void SqliteDatabase::setMark(FileMark mark) {
    execute(fmt::format("PRAGMA main.application_id = {}", mark.kind));
    execute(fmt::format("PRAGMA main.user_version = {}", mark.version));
}

std::unique_ptr<Statement> SqliteDatabase::prepare(std::string_view sql) {
    return std::make_unique<PreparedStatement>(source_, sql);
}

std::int64_t SqliteDatabase::execute(std::string_view sql) {
    PreparedStatement statement(source_, sql);
    const std::int64_t before = sqlite3_total_changes64(source_.handle);
    while (statement.step()) {
    }
    return sqlite3_total_changes64(source_.handle) == before ? 0 : changedRows();
}

std::int64_t SqliteDatabase::changedRows() const { return sqlite3_changes64(source_.handle); }

RowOutcome SqliteDatabase::update(const FetchedRow& row, const std::vector<ColumnValue>& changes) {
    return rows_.update(row, changes);
}

RowOutcome SqliteDatabase::remove(const FetchedRow& row) { return rows_.remove(row); }

base::Value SqliteDatabase::insert(const Table& table, const std::vector<ColumnValue>& values) {
    return rows_.insert(table, values);
}

bool SqliteDatabase::read(const Table& table, const base::Value& key,
                          std::vector<ColumnValue>& columns) {
    return rows_.read(table, key, columns);
}

base::Value SqliteDatabase::defaultOf(const Column& column) { return rows_.defaultOf(column); }

std::unique_ptr<RowLoader> SqliteDatabase::loader(const Table& table) {
    return std::make_unique<Loader>(source_, table);
}

bool SqliteDatabase::inTransaction() const { return sqlite3_get_autocommit(source_.handle) == 0; }

void SqliteDatabase::begin() {
    if (linked_.empty() || ownTable_.empty()) {
        execute("BEGIN IMMEDIATE");
        return;
    }
    requireSameFiles(source_);
    // An immediate transaction would lock the linked files, too, and wait for whoever writes there.
    // A change to no row takes the lock of this file alone.
    execute("BEGIN");
    try {
        execute(fmt::format("DELETE FROM main.{} WHERE 0", quoted(ownTable_)));
    } catch (const StoreError&) {
        execute("ROLLBACK");
        throw;
    }
}

void SqliteDatabase::commit() {
    requireSameFiles(source_);
    execute("COMMIT");
}

void SqliteDatabase::rollback() { execute("ROLLBACK"); }

void SqliteDatabase::beginReading() {
    execute("BEGIN");
    try {  // the engine's moment is the first reading of each file
        execute("SELECT COUNT(*) FROM main.sqlite_master");
        for (const auto& [name, path] : linked_) {
            execute(fmt::format("SELECT COUNT(*) FROM {}.sqlite_master", quoted(name)));
        }
    } catch (const StoreError&) {
        rollback();
        throw;
    }
}

void SqliteDatabase::setDurability(Durability durability) {
    const std::string_view level = durability == Durability::PowerCut ? "FULL" : "NORMAL";
    execute(fmt::format("PRAGMA main.synchronous = {}", level));
    for (const auto& [name, path] : linked_) {
        execute(fmt::format("PRAGMA {}.synchronous = {}", quoted(name), level));
    }
}

void SqliteDatabase::setLockTimeout(int milliseconds) {
    source_.lockTimeoutMs = milliseconds;
    sqlite3_busy_timeout(source_.handle, milliseconds);
}

void SqliteDatabase::checkpoint() {
    requireSameFiles(source_);
    constexpr int PatienceMs = 500;
    sqlite3_busy_timeout(source_.handle, std::min(PatienceMs, source_.lockTimeoutMs));
    const int code = sqlite3_wal_checkpoint_v2(source_.handle, nullptr, SQLITE_CHECKPOINT_TRUNCATE,
                                               nullptr, nullptr);
    sqlite3_busy_timeout(source_.handle, source_.lockTimeoutMs);
    if (code != SQLITE_BUSY && code != SQLITE_LOCKED) {
        check(source_, code);
    }
    static_cast<void>(areSameFiles(source_));  // what was brought in just now is known
}

void SqliteDatabase::registerFunction(const Function& function) {
    const int flags =
        SQLITE_UTF8 | SQLITE_INNOCUOUS | (function.deterministic ? SQLITE_DETERMINISTIC : 0);
    auto registered = std::make_unique<Registered>(Registered{function, source_});
    check(source_, sqlite3_create_function_v2(source_.handle, function.name.c_str(),
                                              function.arguments, flags, registered.release(),
                                              callRegistered, nullptr, nullptr, forget));
}

void SqliteDatabase::create(const Table& table) {
    SavePoint savePoint(*this);
    execute(createTableStatement(table));
    for (const std::string& statement : createIndexStatements(table, table.indexes)) {
        execute(statement);
    }
    savePoint.keep();
    readCatalog();
}

void SqliteDatabase::createIndexes(const Table& table) {
    SavePoint savePoint(*this);
    for (const std::string& statement : createIndexStatements(table, table.indexes)) {
        execute(statement);
    }
    savePoint.keep();
    readCatalog();
}

std::vector<std::string> SqliteDatabase::complete(const Table& table) {
    const Table* found = catalog_.find(table.name);
    if (found == nullptr) {
        create(table);
        return {table.name};
    }
    const Table missing = lacking(table, found);
    std::vector<std::string> added;
    SavePoint savePoint(*this);
    for (const Column& column : missing.columns) {
        execute(addColumnStatement(table, column));
        added.push_back(table.name + "." + column.name);
    }
    for (const std::string& statement : createIndexStatements(table, missing.indexes)) {
        execute(statement);
        added.push_back("an index of " + table.name);
    }
    savePoint.keep();
    if (!added.empty()) {
        readCatalog();
    }
    return added;
}

void SqliteDatabase::copyTo(const std::string& path, const CopyProgress& progress) {
    constexpr int PagesAtOnce = 1000;
    createEmpty(path);
    sqlite3* made = nullptr;
    const int opened = sqlite3_open_v2(path.c_str(), &made, SQLITE_OPEN_READWRITE, nullptr);
    const Source copy{made, path, source_.lockTimeoutMs, nullptr};
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle(made, sqlite3_close_v2);
    check(copy, opened);
    std::unique_ptr<sqlite3_backup, int (*)(sqlite3_backup*)> backup(
        sqlite3_backup_init(made, "main", source_.handle, "main"), sqlite3_backup_finish);
    check(copy, backup == nullptr ? sqlite3_errcode(made) : SQLITE_OK);
    while (sqlite3_backup_step(backup.get(), PagesAtOnce) == SQLITE_OK) {
        const int all = sqlite3_backup_pagecount(backup.get());
        progress(all - sqlite3_backup_remaining(backup.get()), all);
    }
    check(copy, sqlite3_backup_finish(backup.release()));
}

void SqliteDatabase::readCatalog() {
    catalog_ = Catalog();
    addTables("main", source_.path);
    for (const auto& [name, path] : linked_) {
        addTables(name, path);
    }
}

}  // namespace store::sqlite
