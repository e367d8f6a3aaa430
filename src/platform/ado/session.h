#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/ado/plan.h"
#include "platform/base/error.h"
#include "platform/store/base/database.h"

namespace ado {

/// What `work` returns; an error that it raises carries the statement.
template <class Work>
auto raisedBy(std::string_view statement, Work work) {
    try {
        return work();
    } catch (base::RunTimeError& error) {
        error.raisedBy(statement);
        throw;
    }
}

/// What a session asks of the recordsets that are open on it.
class OpenRecordset {
public:
    virtual ~OpenRecordset() = default;
    /// Copies the rows not yet read into memory, so that nothing of it is under way in the store.
    virtual void drain() = 0;
    /// The connection is being closed.
    virtual void connectionClosed() = 0;
};

/// A plan with a statement prepared for it and its literals bound.
struct BoundStatement {
    std::shared_ptr<Plan> plan;
    std::unique_ptr<store::Statement> statement;
};

/// The open database of a connection, its plans and its recordsets. A half-read statement would
/// make the next write fail or never end, so every write goes through beforeWrite().
class Session {
public:
    explicit Session(std::unique_ptr<store::Database> database);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] store::Database& database() { return *database_; }

    /// Translates and prepares, or finds what is kept. Raises jet::SqlError, store::StoreError.
    [[nodiscard]] BoundStatement prepare(std::string_view sql);
    /// Runs a statement that returns no rows; the number of rows changed.
    std::int64_t execute(std::string_view sql);

    void add(OpenRecordset* recordset) { recordsets_.push_back(recordset); }
    void remove(OpenRecordset* recordset);
    void beforeWrite();

    /// Transactions nest; only the outermost commit reaches the file.
    void begin();
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

    std::unique_ptr<store::Database> database_;
    PlanCache plans_;
    std::vector<OpenRecordset*> recordsets_;
    int depth_ = 0;
};

/// Several writes that are made together or not at all.
class RollbackUnlessKept {
public:
    explicit RollbackUnlessKept(Session& session) : session_(session) { session_.begin(); }
    ~RollbackUnlessKept();
    RollbackUnlessKept(const RollbackUnlessKept&) = delete;
    RollbackUnlessKept& operator=(const RollbackUnlessKept&) = delete;
    void keep();

private:
    Session& session_;
    bool kept_ = false;
};

}  // namespace ado
