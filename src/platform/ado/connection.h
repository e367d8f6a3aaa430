#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/enums.h"
#include "platform/base/notcopied.h"
#include "platform/base/ports.h"
#include "platform/store/base/database.h"

namespace ado {

class Session;  // the open database, its statement cache and its open cursors

/// One connection to one database file. Statements are of the Jet dialect.
class Connection : private base::NotCopied {
public:
    Connection();
    ~Connection();

    void Provider(const std::string& name) { provider_ = name; }
    [[nodiscard]] const std::string& Provider() const { return provider_; }

    /// Opens the file of that path; it must exist. User, password and options are not used.
    /// Raises store::StoreError.
    void Open(const std::string& path, const std::string& user = {},
              const std::string& password = {}, int options = -1);
    /// Closes; recordsets still open on it are closed too, an open transaction is committed.
    void Close();
    [[nodiscard]] ObjectState State() const;

    /// Runs one INSERT, UPDATE or DELETE; returns the number of rows changed. Raises jet::SqlError,
    /// store::StoreError, SelectNotExecutable.
    std::int64_t Execute(std::string_view sql);

    /// The same where nobody asks for that number: a unit that writes together may put it off.
    void executeUncounted(std::string_view sql);

    /// Takes the write lock at once. Transactions nest. CommitTrans and RollbackTrans raise
    /// NoTransaction without one.
    void BeginTrans();
    void CommitTrans();
    void RollbackTrans();

    /// The tables of another file become visible here; a table of this file wins. Raises
    /// store::StoreError, ObjectOpen while recordsets are open.
    void link(const std::string& path);

    /// What a group operation runs in; see store::Durability.
    void setDurability(store::Durability durability);
    void checkpoint();

    /// Raises store::StoreError where the file can be read but not written.
    void requireWritable() const;
    [[nodiscard]] const store::Catalog& catalog() const;
    [[nodiscard]] store::FileMark mark() const;
    /// How often this connection waited for a server's answer.
    [[nodiscard]] std::int64_t roundTrips() const;
    [[nodiscard]] const std::shared_ptr<Session>& session() const { return session_; }

private:
    std::string provider_;
    std::shared_ptr<Session> session_;
};

/// Brackets reads that need nothing of each other's results: a server is asked for all of them at
/// once, whichever of its connections they are for. While this lives, the first recordset that is
/// opened with exactly one of the texts has the rows that came then; without it, or from a file, it
/// asks by itself. Raises nothing that opening the recordset would not raise.
class ReadAhead : private base::NotCopied {
public:
    enum class Until {
        Write,  ///< what is not opened before the connection writes is asked for anew
        End,    ///< what is written meanwhile does not concern these rows
    };
    struct Reads {
        Connection& connection;
        std::vector<std::string> statements;
        Until until = Until::Write;
    };
    ReadAhead(Connection& connection, const std::vector<std::string>& statements,
              Until until = Until::Write);
    /// Each connection stands there once.
    ReadAhead(std::initializer_list<Reads> reads);

private:
    struct Kept : private base::NotCopied {
        Kept(const std::shared_ptr<Session>& owner, std::uint64_t number);
        ~Kept();
        std::weak_ptr<Session> session;
        std::uint64_t ticket;
    };
    std::list<Kept> kept_;
};

/// How a unit of work goes to a server; files do without.
struct UnitPlan {
    /// Asked for with the lock, as by a ReadAhead whose rows no write of the unit concerns before
    /// they are opened.
    std::vector<std::string> reads = {};
    /// Updates of rows, and what is executed uncounted, go together: at the latest with the commit,
    /// before that with the next read. What one of them raises is raised there.
    bool writesTogether = false;
};

/// Brackets one unit of work: begins in its constructor, commits in its destructor whatever
/// happened inside (a fault keeps what the unit had written; only a killed program rolls it back).
/// Inside another transaction it is part of that one. Closing the connection commits it, too.
class CommitOnExit : private base::NotCopied {
public:
    explicit CommitOnExit(Connection& connection, const UnitPlan& plan = {});
    ~CommitOnExit();
    /// Commits now and raises what the commit raises.
    void commit();

private:
    std::weak_ptr<Session> session_;  ///< while the unit is open
    std::weak_ptr<Session> reads_;
    std::uint64_t ticket_ = 0;
};

/// Brackets an operation on many rows of one connection: while it lives, commits are quick and
/// survive a crash of the program only; its end puts everything on the disk. Not inside a
/// transaction.
class GroupWork : private base::NotCopied {
public:
    explicit GroupWork(Connection& connection);
    ~GroupWork();

    /// Does one unit of work, which writes together. Another program's group operation leaves the
    /// file free for moments only: where it is locked for longer than a short turn, nothing of the
    /// work is done and the answer is false. Raises what the work raises but for that.
    [[nodiscard]] bool unit(const std::function<void()>& work,
                            const std::vector<std::string>& reads = {});

private:
    Connection& connection_;
};

}  // namespace ado
