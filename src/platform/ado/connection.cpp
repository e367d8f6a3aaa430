#include "platform/ado/connection.h"

#include "platform/ado/command.h"
#include "platform/ado/session.h"
#include "platform/base/error.h"
#include "platform/base/notcopied.h"
#include "platform/store/open/open.h"

namespace ado {

namespace {

Session& openSession(const std::shared_ptr<Session>& session) {
    if (session == nullptr) {
        throw base::RunTimeError(errors::ObjectClosed, "The connection is closed.");
    }
    return *session;
}

/// Another time-out for locks while it lives.
class LockTimeout : private base::NotCopied {
public:
    LockTimeout(Connection& connection, int milliseconds) : connection_(connection) {
        openSession(connection_.session()).database().setLockTimeout(milliseconds);
    }
    ~LockTimeout() {
        if (connection_.State() == ObjectState::Open) {
            connection_.session()->database().setLockTimeout(store::LockTimeoutMs);
        }
    }

private:
    Connection& connection_;
};

}  // namespace

Connection::Connection() = default;

Connection::~Connection() {
    try {
        Close();
    } catch (const base::RunTimeError&) {  // the file keeps what reached it
    }
}

void Connection::Open(const std::string& path, const std::string&, const std::string&, int) {
    if (session_ != nullptr) {
        throw base::RunTimeError(errors::ObjectOpen, "The connection is open already.");
    }
    session_ = std::make_shared<Session>(store::open(path));
}

void Connection::Close() {
    if (const auto session = std::exchange(session_, nullptr)) {
        session->close();
    }
}

ObjectState Connection::State() const {
    return session_ == nullptr ? ObjectState::Closed : ObjectState::Open;
}

std::int64_t Connection::Execute(std::string_view sql) {
    return raisedBy(sql, [&] { return openSession(session_).execute(sql); });
}

void Connection::executeUncounted(std::string_view sql) {
    raisedBy(sql, [&] { openSession(session_).executeUncounted(sql); });
}

void Connection::BeginTrans() { openSession(session_).begin(); }

void Connection::CommitTrans() { openSession(session_).commit(); }

void Connection::RollbackTrans() { openSession(session_).rollback(); }

void Connection::link(const std::string& path) { openSession(session_).link(path); }

void Connection::setDurability(store::Durability durability) {
    openSession(session_).database().setDurability(durability);
}

void Connection::checkpoint() { openSession(session_).checkpoint(); }

store::FileMark Connection::mark() const { return openSession(session_).database().mark(); }

std::int64_t Connection::roundTrips() const {
    return openSession(session_).database().roundTrips();
}

void Connection::requireWritable() const { openSession(session_).database().requireWritable(); }

const store::Catalog& Connection::catalog() const {
    return openSession(session_).database().catalog();
}

ReadAhead::ReadAhead(Connection& connection, const std::vector<std::string>& statements,
                     Until until)
    : ReadAhead(std::initializer_list<Reads>{{connection, statements, until}}) {}

ReadAhead::ReadAhead(std::initializer_list<Reads> reads) {
    std::vector<SentAhead> sent;
    for (const Reads& one : reads) {
        sent.push_back(openSession(one.connection.session())
                           .sendAhead(one.statements, one.until == Until::End));
    }
    for (auto next = sent.begin(); const Reads& one : reads) {
        const auto& session = one.connection.session();
        kept_.emplace_back(session, session->keepAhead(std::move(*next++)));
    }
}

ReadAhead::Kept::Kept(const std::shared_ptr<Session>& owner, std::uint64_t number)
    : session(owner), ticket(number) {}

ReadAhead::Kept::~Kept() {
    if (const auto open = session.lock()) {
        open->dropAhead(ticket);
    }
}

CommitOnExit::CommitOnExit(Connection& connection, const UnitPlan& plan) {
    Session& session = openSession(connection.session());
    reads_ = connection.session();
    if (session.inTransaction()) {
        ticket_ = session.keepAhead(session.sendAhead(plan.reads, true));
        return;
    }
    ticket_ = session.beginWith(plan.reads);
    session_ = connection.session();
    if (plan.writesTogether) {
        session.putWritesOff();
    }
}

CommitOnExit::~CommitOnExit() {
    while (!session_.expired()) {
        try {
            commit();
        } catch (const base::RunTimeError&) {  // the fault that led here has been told already
        }
    }
    if (const auto session = reads_.lock()) {
        session->dropAhead(ticket_);
    }
}

/// What was put off and cannot be written is given up, and the unit stays open without it.
void CommitOnExit::commit() {
    const auto session = session_.lock();
    const bool isOpen = session != nullptr && session->inTransaction();
    const bool isDone = !isOpen || session->commitPutOff();
    session_.reset();
    if (isDone) {
        return;
    }
    try {
        session->commit();
    } catch (const store::StoreError&) {
        session->abandon();
        throw;
    }
}

GroupWork::GroupWork(Connection& connection) : connection_(connection) {
    connection_.setDurability(store::Durability::Crash);
}

GroupWork::~GroupWork() {
    constexpr int PatienceMs = 300;  // for whoever writes just now: the checkpoint can come later
    try {
        connection_.setDurability(store::Durability::PowerCut);
        const LockTimeout shortTurn(connection_, PatienceMs);
        connection_.checkpoint();
    } catch (const base::RunTimeError&) {  // closed meanwhile, or ended by a fault told already
    }
}

bool GroupWork::unit(const std::function<void()>& work, const std::vector<std::string>& reads) {
    constexpr int TurnMs = 30;
    const LockTimeout shortTurn(connection_, TurnMs);
    try {
        CommitOnExit unit(connection_, {.reads = reads, .writesTogether = true});
        try {
            work();
            unit.commit();
        } catch (const store::StoreError& error) {
            const auto& session = connection_.session();
            if (error.fault() == store::Fault::Locked && session &&
                session->database().inTransaction()) {
                session->rollback();
            }
            throw;
        }
    } catch (const store::StoreError& error) {
        if (error.fault() != store::Fault::Locked) {
            throw;
        }
        return false;
    }
    return true;
}

std::int64_t Command::Execute() {
    if (connection_ == nullptr) {
        throw base::RunTimeError(errors::ObjectClosed, "The command has no connection.");
    }
    return connection_->Execute(text_);
}

}  // namespace ado
