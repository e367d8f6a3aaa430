#include "platform/ado/session.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "platform/ado/enums.h"
#include "platform/jet/functions.h"

namespace ado {

namespace {

void bindAll(store::Statement& statement, const jet::Translation& translation,
             const jet::Shape& shape) {
    int place = 0;
    for (const jet::Parameter& parameter : translation.parameters) {
        statement.bind(place++, jet::boundValue(parameter, shape.literals));
    }
}

std::vector<store::Statement*> statementsOf(const std::vector<BoundStatement>& bound) {
    std::vector<store::Statement*> statements;
    statements.reserve(bound.size());
    for (const BoundStatement& one : bound) {
        statements.push_back(one.statement.get());
    }
    return statements;
}

}  // namespace

Session::Session(std::unique_ptr<store::Database> database)
    : database_(std::move(database)), putOff_(*database_) {
    for (const jet::StoreFunction& function : jet::storeFunctions()) {
        database_->registerFunction(
            {function.name, function.arguments, function.deterministic, function.call});
    }
}

Session::~Session() = default;

BoundStatement Session::prepare(std::string_view sql) {
    const jet::Shape shape = jet::shapeOf(sql);
    BoundStatement bound{plans_.find(shape.key), nullptr};
    if (bound.plan == nullptr) {
        bound.plan = std::make_shared<Plan>(jet::translate(sql, database_->catalog()));
        plans_.add(shape.key, bound.plan);
    }
    bound.statement = bound.plan->take(*database_);
    bindAll(*bound.statement, bound.plan->translation(), shape);
    return bound;
}

std::int64_t Session::execute(std::string_view sql) {
    BoundStatement bound = prepare(sql);
    if (bound.plan->translation().kind == jet::StatementKind::Select) {
        throw base::RunTimeError(errors::SelectNotExecutable,
                                 "A SELECT statement is opened as a recordset, not executed.");
    }
    writePutOff();
    beforeWrite();
    bound.statement->step();
    bound.plan->giveBack(std::move(bound.statement));
    return database_->changedRows();
}

void Session::executeUncounted(std::string_view sql) {
    if (!putsOff_) {
        execute(sql);
        return;
    }
    beforeWrite();
    putOff_.add(prepare(sql), sql);
}

void Session::update(store::FetchedRow row, std::vector<store::ColumnValue> changes,
                     std::string_view source) {
    if (putsOff_) {
        putOff_.add(std::move(row), std::move(changes), source);
    } else {
        requireWritten(database_->update(row, changes), row.table->name);
    }
}

BoundStatement Session::prepareRead(std::string_view sql) {
    if (auto read = ahead_.take(sql)) {
        return std::move(*read);
    }
    writePutOff();
    return prepare(sql);
}

std::vector<BoundStatement> Session::bound(const std::vector<std::string>& statements) {
    std::vector<BoundStatement> bound;
    bound.reserve(statements.size());
    for (const std::string& statement : statements) {
        bound.push_back(raisedBy(statement, [&] { return prepare(statement); }));
    }
    return bound;
}

ReadsAhead::Ticket Session::keepAhead(SentAhead sent) {
    if (sent.rows != nullptr) {
        sent.rows->takeIn();
    }
    const ReadsAhead::Ticket ticket = ahead_.newTicket();
    for (std::size_t i = 0; i < sent.bound.size(); ++i) {
        ahead_.add(ticket, sent.texts[i], std::move(sent.bound[i]), sent.outlivesWrites);
    }
    return ticket;
}

SentAhead Session::sendAhead(const std::vector<std::string>& statements, bool outlivesWrites) {
    SentAhead sent{statements, {}, outlivesWrites};
    std::erase_if(sent.texts, [this](const std::string& one) { return ahead_.has(one); });
    if (sent.texts.empty() || !database_->sendsTogether()) {
        return {};
    }
    if (!outlivesWrites) {
        writePutOff();
    }
    sent.bound = bound(sent.texts);
    sent.rows = database_->fetchTogether(statementsOf(sent.bound));
    return sent;
}

bool Session::writePutOff(bool commits) {
    if (putOff_.isEmpty()) {
        return false;
    }
    requireTransaction();
    return putOff_.write(commits);
}

void Session::remove(OpenRecordset* recordset) {
    const auto at = std::find(recordsets_.begin(), recordsets_.end(), recordset);
    if (at != recordsets_.end()) {
        recordsets_.erase(at);
    }
}

void Session::beforeWrite() {
    ahead_.dropWhatWritesConcern();
    for (OpenRecordset* recordset : recordsets_) {
        recordset->drain();
    }
}

void Session::begin() { static_cast<void>(beginWith({})); }

ReadsAhead::Ticket Session::beginWith(const std::vector<std::string>& reads) {
    writePutOff();
    beforeWrite();
    if (depth_ > 0 && !database_->inTransaction()) {
        ended();
    }
    ReadsAhead::Ticket ticket = 0;
    if (depth_ == 0 && !reads.empty() && database_->sendsTogether()) {
        std::vector<BoundStatement> statements = bound(reads);
        database_->beginWith(statementsOf(statements));
        ticket = keepAhead({reads, std::move(statements), true});
    } else if (depth_ == 0) {
        database_->begin();
    } else {
        database_->execute(fmt::format("SAVEPOINT level{}", depth_));
    }
    ++depth_;
    return ticket;
}

/// The outermost transaction is no more.
void Session::ended() {
    depth_ = 0;
    putsOff_ = false;
    putOff_.clear();
}

void Session::requireTransaction() {
    if (depth_ == 0) {
        throw base::RunTimeError(errors::NoTransaction, "No transaction is open.");
    }
    if (!database_->inTransaction()) {
        ended();
        throw store::StoreError(store::Fault::Other,
                                "The changes of this transaction were undone by an earlier fault.");
    }
}

bool Session::commitPutOff() {
    const bool isCommitted = depth_ == 1 && writePutOff(true);
    if (isCommitted) {
        ended();
    }
    return isCommitted;
}

void Session::commit() {
    requireTransaction();
    if (commitPutOff()) {
        return;
    }
    if (depth_ == 1) {
        database_->commit();
        ended();
        return;
    }
    writePutOff();
    database_->execute(fmt::format("RELEASE level{}", depth_ - 1));
    --depth_;
}

void Session::rollback() {
    requireTransaction();
    beforeWrite();
    putOff_.clear();
    --depth_;
    if (depth_ == 0) {
        ended();
        database_->rollback();
    } else {
        database_->execute(fmt::format("ROLLBACK TO level{}", depth_));
        database_->execute(fmt::format("RELEASE level{}", depth_));
    }
}

void Session::abandon() noexcept {
    ended();
    try {
        if (database_->inTransaction()) {
            database_->rollback();
        }
    } catch (const base::RunTimeError&) {  // nothing is left to undo
    }
}

void Session::link(const std::string& path) {
    if (!recordsets_.empty()) {
        throw base::RunTimeError(errors::ObjectOpen,
                                 "Tables cannot be linked while recordsets are open.");
    }
    ahead_.clear();
    plans_.clear();
    database_->link(path);
}

void Session::checkpoint() {
    writePutOff();
    beforeWrite();
    database_->checkpoint();
}

void Session::close() {
    for (OpenRecordset* recordset : std::exchange(recordsets_, {})) {
        recordset->connectionClosed();
    }
    if (depth_ > 0 && database_->inTransaction() && !commitPutOff()) {
        database_->commit();
    }
    ended();
    ahead_.clear();
    plans_.clear();
    database_.reset();
}

RollbackUnlessKept::~RollbackUnlessKept() {
    if (!kept_) {
        try {
            session_.rollback();
        } catch (const base::RunTimeError&) {  // undone already by the fault that led here
        }
    }
}

void RollbackUnlessKept::keep() {
    session_.commit();
    kept_ = true;
}

}  // namespace ado
