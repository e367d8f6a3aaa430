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

}  // namespace

Session::Session(std::unique_ptr<store::Database> database) : database_(std::move(database)) {
    for (const jet::StoreFunction& function : jet::storeFunctions()) {
        database_->registerFunction(
            {function.name, function.arguments, function.deterministic, function.call});
    }
}

Session::~Session() { plans_.clear(); }

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
    beforeWrite();
    bound.statement->step();
    bound.plan->giveBack(std::move(bound.statement));
    return database_->changedRows();
}

void Session::remove(OpenRecordset* recordset) {
    const auto at = std::find(recordsets_.begin(), recordsets_.end(), recordset);
    if (at != recordsets_.end()) {
        recordsets_.erase(at);
    }
}

void Session::beforeWrite() {
    for (OpenRecordset* recordset : recordsets_) {
        recordset->drain();
    }
}

void Session::begin() {
    beforeWrite();
    if (depth_ > 0 && !database_->inTransaction()) {
        depth_ = 0;
    }
    if (depth_ == 0) {
        database_->begin();
    } else {
        database_->execute(fmt::format("SAVEPOINT level{}", depth_));
    }
    ++depth_;
}

void Session::requireTransaction() {
    if (depth_ == 0) {
        throw base::RunTimeError(errors::NoTransaction, "No transaction is open.");
    }
    if (!database_->inTransaction()) {
        depth_ = 0;
        throw store::StoreError(store::Fault::Other,
                                "The changes of this transaction were undone by an earlier fault.");
    }
}

void Session::commit() {
    requireTransaction();
    if (depth_ == 1) {
        database_->commit();
    } else {
        database_->execute(fmt::format("RELEASE level{}", depth_ - 1));
    }
    --depth_;
}

void Session::rollback() {
    requireTransaction();
    beforeWrite();
    --depth_;
    if (depth_ == 0) {
        database_->rollback();
    } else {
        database_->execute(fmt::format("ROLLBACK TO level{}", depth_));
        database_->execute(fmt::format("RELEASE level{}", depth_));
    }
}

void Session::abandon() noexcept {
    depth_ = 0;
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
    plans_.clear();
    database_->link(path);
}

void Session::checkpoint() {
    beforeWrite();
    database_->checkpoint();
}

void Session::close() {
    for (OpenRecordset* recordset : std::exchange(recordsets_, {})) {
        recordset->connectionClosed();
    }
    plans_.clear();
    if (depth_ > 0 && database_->inTransaction()) {
        database_->commit();
    }
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
