#include "platform/ado/putoff.h"

#include <utility>

#include <fmt/format.h>

#include "platform/ado/enums.h"
#include "platform/ado/raisedby.h"
#include "platform/base/error.h"

namespace ado {

void requireWritten(store::RowOutcome outcome, std::string_view table) {
    if (outcome == store::RowOutcome::Deleted) {
        throw base::RunTimeError(
            errors::RecordDeleted,
            fmt::format("The record of table {} has been deleted by another user.", table));
    }
    if (outcome == store::RowOutcome::Changed) {
        throw base::RunTimeError(
            errors::RecordChanged,
            fmt::format("The record of table {} has been changed by another user since it was "
                        "read. Nothing was written.",
                        table));
    }
}

void PutOffWrites::add(store::FetchedRow row, std::vector<store::ColumnValue> changes,
                       std::string_view source) {
    writes_.push_back({std::move(row), std::move(changes), {}, std::string(source)});
}

void PutOffWrites::add(BoundStatement bound, std::string_view source) {
    writes_.push_back({{}, {}, std::move(bound), std::string(source)});
}

void PutOffWrites::clear() {
    for (One& one : writes_) {
        if (one.bound.statement != nullptr) {
            one.bound.plan->giveBack(std::move(one.bound.statement));
        }
    }
    writes_.clear();
}

bool PutOffWrites::writeTogether(bool commits) {
    std::vector<store::Write> writes;
    writes.reserve(writes_.size());
    for (const One& one : writes_) {
        writes.push_back({&one.row, &one.changes, one.bound.statement.get()});
    }
    return database_.writeTogether(writes, commits);
}

void PutOffWrites::writeOne(const One& one) {
    raisedBy(one.source, [&] {
        if (one.bound.statement == nullptr) {
            requireWritten(database_.update(one.row, one.changes), one.row.table->name);
        } else {
            one.bound.statement->step();
        }
    });
}

bool PutOffWrites::write(bool commits) {
    const bool alone = writes_.size() == 1 && !commits;
    try {
        const bool isDone = !alone && writeTogether(commits);
        for (std::size_t i = 0; !isDone && i < writes_.size(); ++i) {
            writeOne(writes_[i]);
        }
        clear();
        return isDone && commits;
    } catch (...) {
        clear();
        throw;
    }
}

}  // namespace ado
