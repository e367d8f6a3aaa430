#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/value.h"
#include "platform/store/base/database.h"
#include "platform/store/base/location.h"
#include "platform/store/postgres/faults.h"
#include "platform/store/postgres/waiting.h"

namespace store::postgres {

/// One parameter as it goes to the server: as text, nothing for Null, with the type that it has
/// there or 0 where its place says.
struct Parameter {
    std::optional<std::string> text;
    Oid type = 0;
};

/// A value with the type that the statement must take it for. Raises StoreError for a text that the
/// server cannot keep.
[[nodiscard]] Parameter typed(const base::Value& value);

/// A value as the column that it is meant for reads it.
[[nodiscard]] Parameter untyped(const base::Value& value, ColumnKind kind);

/// A statement that may run several times; prepared on the server when it runs for the second time.
struct Query {
    explicit Query(std::string_view text);

    std::string sql;
    bool writes = false;
    bool isControl = false;  ///< of transactions
    int runs = 0;
    std::vector<Oid> types = {};
    std::string name = {};         ///< on the server; empty where it is not prepared
    std::uint64_t generation = 0;  ///< of the connection that it is prepared on
};

/// A connection to the server that is made again where it was lost. Outside a unit a read is
/// repeated then, a write is not. In a unit each statement that fails leaves what the unit wrote
/// before.
class Link {
public:
    enum class Sharing { Shared, Alone, Unknown };

    /// Connects. Raises StoreError: Unreachable where the server cannot be used, Missing where it
    /// has no such file, which is not asked for with Sharing::Unknown; Locked where somebody else
    /// has it open alone.
    Link(const std::string& path, int lockTimeoutMs, Sharing sharing);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    [[nodiscard]] const Source& source() const { return source_; }
    [[nodiscard]] const ServerPath& place() const { return place_; }

    /// Runs a statement to its end.
    Result run(Query& query, const std::vector<Parameter>& parameters);
    Result run(const std::string& sql, const std::vector<Parameter>& parameters = {});
    /// Several statements without parameters at once, outside a unit or as a part of it.
    void script(const std::string& statements);

    [[nodiscard]] bool inUnit() const { return inUnit_; }
    /// Takes the file's lock.
    void begin();
    void beginReading();
    /// Where the connection is lost meanwhile, the server is asked what became of the unit.
    void commit();
    void rollback();

    void setLockTimeout(int milliseconds) { source_.lockTimeoutMs = milliseconds; }
    void setDurability(Durability durability) { durability_ = durability; }
    /// The files whose tables are found, the first one first.
    void setFiles(std::vector<std::string> files);

    [[nodiscard]] std::int64_t changedRows() const { return changedRows_; }
    /// Forgets a prepared statement.
    void release(const Query& query);

    /// Sends statements as they are; the answer to the last one, or to the first that failed.
    Result exec(const std::string& statements);
    /// The connection itself, for copying into a table.
    [[nodiscard]] PGconn* handle() const { return connection_.get(); }
    /// Raises what an answer stands for unless it is a good one.
    void require(const PGresult* answer);

private:
    struct Command {
        enum class Kind { Run, Prepare, RunPrepared } kind = Kind::Run;
        const std::string* text = nullptr;  ///< the statement or its name
        const std::string* name = nullptr;  ///< of a Prepare
        const std::vector<Parameter>* parameters = nullptr;
    };
    void connect();
    void applySettings();
    void requireFile();
    void takePlace();
    [[nodiscard]] std::vector<std::string> settings() const;
    [[nodiscard]] Result exchange(std::span<const Command> commands, std::size_t wanted);
    /// The next answer; null where the user did not wait for it.
    [[nodiscard]] Result answer();
    [[nodiscard]] Result lastAnswer();
    [[nodiscard]] bool waits();
    void startAsking();
    [[nodiscard]] bool send(const Command& command) const;
    [[nodiscard]] Result once(Query& query, const std::vector<Parameter>& parameters);
    void undoStatement();
    void lose();
    /// Raises Lost, or GivenUp where the user gave up.
    [[noreturn]] void raiseGone(const std::string& what);
    [[nodiscard]] std::string fateOf(const std::string& unit);

    ServerPath place_;
    Source source_;
    Sharing sharing_;
    Connection connection_;
    std::uint64_t generation_ = 0;
    std::uint64_t names_ = 0;
    std::vector<std::string> files_;
    std::vector<std::string> released_;
    std::vector<std::string> applied_;  ///< settings as the connection has them
    Durability durability_ = Durability::PowerCut;
    bool isUp_ = false;
    bool isConnecting_ = false;
    bool isWaiting_ = false;
    bool isCancelled_ = false;
    bool isGivenUp_ = false;  ///< the user waited no longer, the connection is of no use any more
    bool inUnit_ = false;
    std::string unit_;  ///< the server's number of the unit
    std::int64_t changedRows_ = 0;
};

}  // namespace store::postgres
