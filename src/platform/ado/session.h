#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/ahead.h"
#include "platform/ado/plan.h"
#include "platform/ado/putoff.h"
#include "platform/ado/raisedby.h"
#include "platform/base/notcopied.h"
#include "platform/store/base/database.h"

namespace ado {

/// What a session asks of the recordsets that are open on it.
class OpenRecordset {
public:
    virtual ~OpenRecordset() = default;
    /// Copies the rows not yet read into memory, so that nothing of it is under way in the store.
    virtual void drain() = 0;
    /// The connection is being closed.
    virtual void connectionClosed() = 0;
};

/// The open database of a connection, its plans and its recordsets. A half-read statement would
/// make the next write fail or never end, so every write goes through beforeWrite().
class Session : private base::NotCopied {
public:
    explicit Session(std::unique_ptr<store::Database> database);
    ~Session();

    [[nodiscard]] store::Database& database() { return *database_; }

    /// Translates and prepares, or finds what is kept. Raises jet::SqlError, store::StoreError.
    [[nodiscard]] BoundStatement prepare(std::string_view sql);
    /// The same for a statement that is to be read: as it was fetched ahead, or prepared now.
    [[nodiscard]] BoundStatement prepareRead(std::string_view sql);
    /// Runs a statement that returns no rows; the number of rows changed.
    std::int64_t execute(std::string_view sql);
    /// The same where nobody asks for that number: it may be put off.
    void executeUncounted(std::string_view sql);
    void update(store::FetchedRow row, std::vector<store::ColumnValue> changes,
                std::string_view source);

    /// Asks for the rows of statements together where the store gains by that, for `prepareRead`.
    /// The session is not used before they are kept.
    [[nodiscard]] SentAhead sendAhead(const std::vector<std::string>& statements,
                                      bool outlivesWrites);
    /// Waits for them.
    [[nodiscard]] ReadsAhead::Ticket keepAhead(SentAhead sent);
    void dropAhead(ReadsAhead::Ticket ticket) { ahead_.drop(ticket); }

    /// From here to the end of the transaction writes may be put off till something is read that
    /// they could concern, or to the commit.
    void putWritesOff() { putsOff_ = database_->sendsTogether(); }
    /// Raises what the first of them that cannot be written raises; those behind it are given up.
    void writePutOff() { static_cast<void>(writePutOff(false)); }
    /// The same with the commit where something is put off; whether it was.
    [[nodiscard]] bool commitPutOff();

    void add(OpenRecordset* recordset) { recordsets_.push_back(recordset); }
    void remove(OpenRecordset* recordset);
    void beforeWrite();

    /// Transactions nest; only the outermost commit reaches the file.
    void begin();
    /// The same with reads that are fetched behind the lock and outlive writes.
    [[nodiscard]] ReadsAhead::Ticket beginWith(const std::vector<std::string>& reads);
    void commit();
    void rollback();
    [[nodiscard]] bool inTransaction() const { return depth_ > 0; }
    /// Gives up a transaction that cannot be committed.
    void abandon() noexcept;

    void link(const std::string& path);
    void checkpoint();

    /// Closes the recordsets, commits what is open and lets go of the file.
    void close();

private:
    void requireTransaction();
    bool writePutOff(bool commits);
    void ended();
    [[nodiscard]] std::vector<BoundStatement> bound(const std::vector<std::string>& statements);

    std::unique_ptr<store::Database> database_;
    PlanCache plans_;
    ReadsAhead ahead_;
    PutOffWrites putOff_;
    bool putsOff_ = false;
    std::vector<OpenRecordset*> recordsets_;
    int depth_ = 0;
};

/// Several writes that are made together or not at all.
class RollbackUnlessKept : private base::NotCopied {
public:
    explicit RollbackUnlessKept(Session& session) : session_(session) { session_.begin(); }
    ~RollbackUnlessKept();
    void keep();

private:
    Session& session_;
    bool kept_ = false;
};

}  // namespace ado
