#include "platform/store/postgres/database.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "platform/store/base/ddl.h"
#include "platform/store/postgres/catalog.h"
#include "platform/store/postgres/ddl.h"
#include "platform/store/postgres/engine.h"
#include "platform/store/postgres/functions.h"
#include "platform/store/postgres/names.h"
#include "platform/store/postgres/statement.h"

namespace store::postgres {

namespace {

/// Copies rows into a table, block by block.
class Loader final : public RowLoader {
public:
    Loader(Link& link, const Table& table) : link_(link), table_(table) {
        std::vector<std::string> names;
        for (const Column& column : table.columns) {
            names.push_back(column.name);
        }
        const std::string sql =
            fmt::format("COPY {} ({}) FROM STDIN", quoted(table.name), quotedList(names));
        link_.require(link_.exec(sql).get());
    }
    ~Loader() override {
        if (!isFinished_) {
            library().putCopyEnd(link_.handle(), "given up");
            static_cast<void>(lastAnswer());
        }
    }
    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;

    void add(std::span<const base::Value> row) override {
        for (std::size_t i = 0; i < row.size(); ++i) {
            rows_ += i > 0 ? "\t" : "";
            append(untyped(row[i], table_.columns[i].kind));
        }
        rows_ += '\n';
        constexpr std::size_t Block = 1U << 16U;
        if (rows_.size() > Block) {
            send();
        }
    }

    void finish() override {
        send();
        library().putCopyEnd(link_.handle(), nullptr);
        isFinished_ = true;
        link_.require(lastAnswer().get());
        if (const std::string moved = moveCounterStatement(table_); !moved.empty()) {
            static_cast<void>(link_.run(moved));
        }
    }

private:
    void append(const Parameter& value) {
        constexpr std::string_view Special = "\t\n\r\\";
        constexpr std::string_view Letters = "tnr\\";
        if (!value.text) {
            rows_ += "\\N";
            return;
        }
        for (const char c : *value.text) {
            const auto which = Special.find(c);
            if (which == std::string_view::npos) {
                rows_ += c;
            } else {
                rows_ += {'\\', Letters[which]};
            }
        }
    }

    void send() {
        library().putCopyData(link_.handle(), rows_.data(), static_cast<int>(rows_.size()));
        rows_.clear();
    }

    Result lastAnswer() const {
        Result first(library().getResult(link_.handle()));
        while (Result rest{first ? library().getResult(link_.handle()) : nullptr}) {
        }
        return first;
    }

    Link& link_;
    const Table& table_;
    std::string rows_;
    bool isFinished_ = false;
};

PostgresStatement& own(Statement& statement) { return dynamic_cast<PostgresStatement&>(statement); }

std::vector<Call> callsOf(std::span<Statement* const> statements) {
    std::vector<Call> calls;
    calls.reserve(statements.size());
    for (Statement* statement : statements) {
        calls.push_back(own(*statement).call());
    }
    return calls;
}

/// Where there are no answers each statement asks for its own when it is stepped.
void giveOut(std::span<Statement* const> statements, std::vector<Result> answers) {
    for (std::size_t i = 0; i < answers.size(); ++i) {
        own(*statements[i]).take(std::move(answers[i]));
    }
}

/// Reads that a link has sent.
class SentReads final : public Fetch {
public:
    SentReads(Link& link, std::span<Statement* const> reads)
        : link_(link), reads_(reads.begin(), reads.end()) {
        link_.sendReads(callsOf(reads_));
    }
    ~SentReads() override { link_.giveUpReads(); }
    SentReads(const SentReads&) = delete;
    SentReads& operator=(const SentReads&) = delete;

    void takeIn() override { giveOut(reads_, link_.collectReads()); }

private:
    Link& link_;
    std::vector<Statement*> reads_;
};

}  // namespace

PostgresDatabase::PostgresDatabase(const std::string& path, int lockTimeoutMs,
                                   Link::Sharing sharing)
    : link_(path, lockTimeoutMs, sharing), rows_(link_) {
    readCatalog();
}

void PostgresDatabase::readCatalog() {
    catalog_ = Catalog(Engine::Postgres);
    for (Table& table : readTables(link_, link_.place().file)) {
        catalog_.add(std::move(table));
    }
    for (const std::string& file : linked_) {
        for (Table& table : readTables(link_, file)) {
            catalog_.add(std::move(table));
        }
    }
}

void PostgresDatabase::requireWritable() const {
    const Result row = link_.run(
        "SELECT current_setting('transaction_read_only') = 'off' AND NOT EXISTS (SELECT 1 FROM"
        " pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace WHERE n.nspname = $1 AND"
        " c.relkind = 'r' AND NOT has_table_privilege(c.oid, 'UPDATE'))",
        {{link_.place().file}});
    if (*library().value(row.get(), 0, 0) != 't') {
        throw StoreError(Fault::ReadOnly,
                         fmt::format("\"{}\" cannot be written: the server lets this user read it "
                                     "only.",
                                     link_.source().path));
    }
}

/// After a newer library of languages came to the server its indexes of texts can be out of order.
std::vector<std::string> PostgresDatabase::damages() {
    const Result row = link_.run(
        "SELECT collversion IS DISTINCT FROM pg_collation_actual_version(oid) FROM pg_collation"
        " WHERE collname = 'nocase' AND collnamespace = 'vireo'::regnamespace");
    if (library().rowCount(row.get()) > 0 && *library().value(row.get(), 0, 0) == 't') {
        return {
            "the server sorts texts otherwise than when the indexes were made: REINDEX and "
            "ALTER COLLATION vireo.nocase REFRESH VERSION are needed"};
    }
    return {};
}

FileMark PostgresDatabase::mark() const {
    const Result row =
        link_.run("SELECT kind, version FROM vireo.files WHERE file = $1", {{link_.place().file}});
    if (library().rowCount(row.get()) == 0) {
        return {};
    }
    return {static_cast<std::int32_t>(cellOf(row.get(), 0, 0).integer),
            static_cast<std::int32_t>(cellOf(row.get(), 0, 1).integer)};
}

void PostgresDatabase::setMark(FileMark mark) {
    static_cast<void>(link_.run(
        "UPDATE vireo.files SET kind = $1, version = $2 WHERE file = $3",
        {{std::to_string(mark.kind)}, {std::to_string(mark.version)}, {link_.place().file}}));
}

std::int64_t PostgresDatabase::changeMark() const {
    const Result row = link_.run("SELECT pg_snapshot_xmax(pg_current_snapshot())::text::bigint");
    return cellOf(row.get(), 0, 0).integer;
}

void PostgresDatabase::link(const std::string& path) {
    if (!isServer(path) || serverPathOf(path).connection != link_.place().connection) {
        throw StoreError(Fault::Statement,
                         fmt::format("\"{}\" is not in the same database as \"{}\", so that its "
                                     "tables cannot be read together.",
                                     path, link_.source().path));
    }
    std::vector<Table> tables = readTables(link_, serverPathOf(path).file);
    if (tables.empty()) {
        throw StoreError(Fault::Missing, fmt::format("\"{}\" was not found.", path));
    }
    for (Table& table : tables) {
        catalog_.add(std::move(table));
    }
    linked_.push_back(serverPathOf(path).file);
    std::vector<std::string> files = linked_;
    files.insert(files.begin(), link_.place().file);
    link_.setFiles(std::move(files));
}

std::unique_ptr<Statement> PostgresDatabase::prepare(std::string_view sql) {
    return std::make_unique<PostgresStatement>(link_, withQuotedNames(sql, catalog_), queries_);
}

std::int64_t PostgresDatabase::execute(std::string_view sql) {
    static_cast<void>(link_.run(withQuotedNames(sql, catalog_)));
    return link_.changedRows();
}

std::unique_ptr<Fetch> PostgresDatabase::fetchTogether(std::span<Statement* const> reads) {
    return std::make_unique<SentReads>(link_, reads);
}

void PostgresDatabase::beginWith(std::span<Statement* const> reads) {
    giveOut(reads, link_.begin(callsOf(reads)));
}

/// A statement, a row, or several rows that can go as one.
Call PostgresDatabase::callOf(std::span<const Write> writes, std::vector<Parameter>& parameters) {
    const Write& first = writes.front();
    if (first.statement != nullptr) {
        return own(*first.statement).call();
    }
    Query& query = writes.size() > 1 ? rows_.updateManyOrFail(writes, parameters)
                                     : rows_.updateOrFail(*first.row, *first.changes, parameters);
    return {&query, &parameters};
}

bool PostgresDatabase::writeTogether(std::span<const Write> writes, bool commits) {
    rows_.forgetMany();
    std::vector<std::vector<Parameter>> parameters(writes.size());
    std::vector<Call> calls;
    calls.reserve(writes.size());
    for (std::size_t i = 0; i < writes.size();) {
        const std::size_t alike = rowsAlike(writes.subspan(i));
        calls.push_back(callOf(writes.subspan(i, std::max<std::size_t>(alike, 1)), parameters[i]));
        i += std::max<std::size_t>(alike, 1);
    }
    return link_.writeTogether(calls, commits);
}

RowOutcome PostgresDatabase::update(const FetchedRow& row,
                                    const std::vector<ColumnValue>& changes) {
    return rows_.update(row, changes);
}

RowOutcome PostgresDatabase::remove(const FetchedRow& row) { return rows_.remove(row); }

base::Value PostgresDatabase::insert(const Table& table, const std::vector<ColumnValue>& values) {
    return rows_.insert(table, values);
}

bool PostgresDatabase::read(const Table& table, const base::Value& key,
                            std::vector<ColumnValue>& columns) {
    return rows_.read(table, key, columns);
}

std::unique_ptr<RowLoader> PostgresDatabase::loader(const Table& table) {
    return std::make_unique<Loader>(link_, table);
}

void PostgresDatabase::setDurability(Durability durability) {
    if (link_.inUnit()) {
        throw StoreError(Fault::Statement,
                         "How much a commit survives is settled before it begins.");
    }
    link_.setDurability(durability);
}

/// All of them or none.
void PostgresDatabase::run(const std::vector<std::string>& statements) {
    const bool isOwnUnit = !inTransaction();
    if (isOwnUnit) {
        begin();
    }
    try {
        for (const std::string& statement : statements) {
            execute(statement);
        }
    } catch (const StoreError&) {
        if (isOwnUnit && inTransaction()) {
            rollback();
        }
        throw;
    }
    if (isOwnUnit) {
        commit();
    }
}

void PostgresDatabase::create(const Table& table) {
    std::vector<std::string> statements = createTableStatements(table);
    for (std::string& index : createIndexStatements(table, table.indexes)) {
        statements.push_back(std::move(index));
    }
    run(statements);
    Table made = table;
    made.rowKey = rowKeyOf(made);
    catalog_.add(std::move(made));
}

void PostgresDatabase::createIndexes(const Table& table) {
    run(createIndexStatements(table, table.indexes));
    readCatalog();
}

std::vector<std::string> PostgresDatabase::complete(const Table& table) {
    const Table* found = catalog_.find(table.name);
    if (found == nullptr) {
        create(table);
        return {table.name};
    }
    const Table missing = lacking(table, found);
    std::vector<std::string> added;
    std::vector<std::string> statements;
    for (const Column& column : missing.columns) {
        statements.push_back(addColumnStatement(table, column));
        added.push_back(table.name + "." + column.name);
    }
    for (std::string& statement : createIndexStatements(table, missing.indexes)) {
        statements.push_back(std::move(statement));
        added.push_back("an index of " + table.name);
    }
    run(statements);
    if (!added.empty()) {
        readCatalog();
    }
    return added;
}

void PostgresDatabase::announce(const Table& table, const std::string& column) {
    link_.script(fmt::format("{}", fmt::join(announceStatements(table, column), ";")));
}

bool PostgresDatabase::isAnnounced(const Table& table) const {
    const Result row = link_.run(
        "SELECT count(*) FROM pg_trigger WHERE tgname = 'tell' AND tgrelid = to_regclass($1)",
        {{quoted(table.name)}});
    return cellOf(row.get(), 0, 0).integer > 0;
}

void PostgresDatabase::copyTo(const std::string& path, const CopyProgress&) {
    throw StoreError(Fault::Statement,
                     fmt::format("\"{}\" is on a server and cannot be copied as a file to \"{}\": "
                                 "the server's own pg_dump makes its back-ups.",
                                 link_.source().path, path));
}

std::unique_ptr<Database> open(const std::string& path, int lockTimeoutMs) {
    return std::make_unique<PostgresDatabase>(path, lockTimeoutMs, Link::Sharing::Shared);
}

std::unique_ptr<Database> openAlone(const std::string& path) {
    // Whoever still holds a lock has left its place: a unit that the server is just undoing.
    return std::make_unique<PostgresDatabase>(path, LockTimeoutMs, Link::Sharing::Alone);
}

void announce(Database& database, const Table& table, const std::string& column) {
    dynamic_cast<PostgresDatabase&>(database).announce(table, column);
}

bool isAnnounced(const Database& database, const Table& table) {
    return dynamic_cast<const PostgresDatabase&>(database).isAnnounced(table);
}

std::unique_ptr<Database> createDatabase(const std::string& path) {
    {
        Link link(path, LockTimeoutMs, Link::Sharing::Unknown);
        const std::string file = link.place().file;
        const Result found = link.run("SELECT 1 FROM pg_namespace WHERE nspname = $1", {{file}});
        if (library().rowCount(found.get()) > 0) {
            throw StoreError(Fault::Other, fmt::format("\"{}\" is there already.", path));
        }
        const Result prepared = link.run("SELECT to_regclass('vireo.files') IS NOT NULL");
        if (*library().value(prepared.get(), 0, 0) != 't') {
            link.script(std::string(functionScript()));
        }
        link.begin();
        static_cast<void>(link.run("CREATE SCHEMA " + quoted(file)));
        static_cast<void>(link.run("INSERT INTO vireo.files (file) VALUES ($1)", {{file}}));
        link.commit();
    }
    return open(path, LockTimeoutMs);
}

void removeDatabase(const std::string& path) {
    Link link(path, LockTimeoutMs, Link::Sharing::Alone);
    const std::string file = link.place().file;
    link.begin();
    static_cast<void>(link.run("DROP SCHEMA " + quoted(file) + " CASCADE"));
    static_cast<void>(link.run("DELETE FROM vireo.files WHERE file = $1", {{file}}));
    link.commit();
}

}  // namespace store::postgres
