#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/store/base/database.h"
#include "platform/store/base/location.h"
#include "platform/store/postgres/faults.h"
#include "platform/store/postgres/ownbackends.h"
#include "platform/store/postgres/query.h"
#include "platform/store/postgres/waiting.h"

namespace store::postgres {

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

    /// Sends reads together. Nothing else can be asked before they are collected or given up.
    void sendReads(std::span<const Call> reads);
    /// Waits for them; their answers, or none at all where one of them failed.
    [[nodiscard]] std::vector<Result> collectReads();
    /// Does nothing where they are collected; otherwise the connection is given up with them.
    void giveUpReads() noexcept;
    /// Runs writes of a unit in one round trip, with its commit where that is asked for. False
    /// where one of them failed: then none of them is done and the unit goes on.
    [[nodiscard]] bool writeTogether(std::span<const Call> writes, bool commits);

    [[nodiscard]] bool inUnit() const { return inUnit_; }
    /// Takes the file's lock. The answers to reads that are made under it in the same round trip,
    /// or none at all where one of them failed.
    std::vector<Result> begin(std::span<const Call> reads = {});
    void beginReading();
    /// Where the connection is lost meanwhile, the server is asked what became of the unit.
    void commit();
    void rollback();

    void setLockTimeout(int milliseconds) { source_.lockTimeoutMs = milliseconds; }
    void setDurability(Durability durability) { durability_ = durability; }
    /// The files whose tables are found, the first one first.
    void setFiles(std::vector<std::string> files);

    [[nodiscard]] std::int64_t changedRows() const { return changedRows_; }
    /// How often an answer was waited for that another wait of this thread had not left time for.
    [[nodiscard]] std::int64_t roundTrips() const { return roundTrips_; }
    /// Forgets a prepared statement.
    void release(const Query& query) { prepared_.release(query); }

    /// Sends statements as they are; the answer to the last one, or to the first that failed.
    Result exec(const std::string& statements);
    /// The connection itself, for copying into a table.
    [[nodiscard]] PGconn* handle() const { return connection_.get(); }
    /// Raises what an answer stands for unless it is a good one.
    void require(const PGresult* answer);

private:
    using Answers = std::vector<Result>;
    struct Begun {
        Result lock;  ///< or what failed before it was taken
        Answers reads;
        bool readsFailed = false;
    };
    void connect();
    void applySettings();
    void requireFile();
    void takePlace();
    [[nodiscard]] std::vector<std::string> settings() const;
    [[nodiscard]] Answers exchange(std::span<const Command> commands);
    [[nodiscard]] bool dispatch(std::span<const Command> commands);
    [[nodiscard]] Answers receive(std::size_t count);
    void countTrip();
    /// The next answer; null where the user did not wait for it.
    [[nodiscard]] Result answer();
    [[nodiscard]] Result lastAnswer();
    [[nodiscard]] bool waits();
    void startAsking();
    [[nodiscard]] bool send(const Command& command) const;
    [[nodiscard]] Result once(Query& query, const std::vector<Parameter>& parameters);
    void makeReady();
    void undoStatement();
    void beginAnew();
    void raiseIfUnitIsLost();
    [[nodiscard]] Begun tryToBegin(std::span<const Call> reads);
    void committed(PGresult* answer);
    void lose();
    /// Raises Lost, or GivenUp where the user gave up.
    [[noreturn]] void raiseGone(const std::string& what);
    [[nodiscard]] std::string fateOf(const std::string& unit);

    ServerPath place_;
    Source source_;
    Sharing sharing_;
    Connection connection_;
    std::optional<OwnBackend> own_;
    PreparedNames prepared_;
    /// What stands around the calls of an exchange, prepared like these.
    struct Brackets {
        Query begin{"BEGIN"};
        Query commit{"COMMIT"};
        Query savepoint{"SAVEPOINT vireo_statement"};
        Query release{"RELEASE SAVEPOINT vireo_statement"};
        /// What goes to the server together finds rows by their keys, so that one plan does for all
        /// of them: the server would plan anew each time, which takes longer than the reading.
        Query planOnce{"SELECT set_config('plan_cache_mode', 'force_generic_plan', true)"};
    } brackets_;
    Query lock_;
    std::unique_ptr<Sending> reads_;  ///< that are not collected yet
    bool areReadsSent_ = false;
    std::vector<std::string> files_;
    std::vector<std::string> applied_;  ///< settings as the connection has them
    Durability durability_ = Durability::PowerCut;
    bool isUp_ = false;
    bool isConnecting_ = false;
    bool isWaiting_ = false;
    bool isCancelled_ = false;
    bool isGivenUp_ = false;  ///< the user waited no longer, the connection is of no use any more
    bool inUnit_ = false;
    bool hasWritten_ = false;  ///< in this unit
    std::string unit_;         ///< the server's number of the unit
    std::int64_t changedRows_ = 0;
    std::int64_t roundTrips_ = 0;
    std::int64_t waitsBefore_ = 0;  ///< of the thread, when something was sent last
};

}  // namespace store::postgres
