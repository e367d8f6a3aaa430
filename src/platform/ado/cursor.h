#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include "platform/ado/cells.h"
#include "platform/ado/session.h"
#include "platform/base/notcopied.h"

namespace ado {

/// A place among the rows of one result, which are read as they are needed. Going forward only, the
/// current row is the statement's own and nothing is copied; otherwise, and once drained, rows are
/// kept in memory. Rows added through it stand at the end.
class Cursor : private base::NotCopied {
public:
    /// Stands on the first row. `keepRows` allows going back.
    Cursor(BoundStatement bound, bool keepRows);
    ~Cursor();

    [[nodiscard]] const Plan& plan() const { return *plan_; }

    [[nodiscard]] bool isEmpty() const { return isBof() && isEof(); }
    [[nodiscard]] bool isBof() const { return place_ < 0 || isNeverFilled(); }
    [[nodiscard]] bool isEof() const {
        return !isLive_ && place_ >= static_cast<Place>(rows_.size());
    }
    /// Whether there is a current row that was not removed.
    [[nodiscard]] bool isOnRow() const;

    /// The cell of the current row, hidden columns included. Text holds until the cursor moves or
    /// is drained.
    [[nodiscard]] store::Cell cell(int column) const {
        return isLive_ ? statement_->cell(column)
                       : rows_.cell(static_cast<std::size_t>(place_), column);
    }
    /// The statement whose current row is this one; null where the row is in memory.
    [[nodiscard]] const store::Statement* liveRow() const {
        return isLive_ ? statement_.get() : nullptr;
    }
    /// Whether the current row is still the first one that was read.
    [[nodiscard]] bool isAtStart() const { return isAtStart_; }

    void moveNext();
    void movePrevious();
    void moveFirst();
    void moveLast();
    /// Rows in all, without removed ones; reads on to the end.
    [[nodiscard]] std::int64_t count();

    /// Reads on to the end into memory.
    void drain();

    /// Puts a row of stored values at the end and stands on it. Only once drained.
    void append(const std::vector<base::Value>& stored);
    /// Leaves the current row out from now on. Only once drained.
    void markRemoved();

private:
    using Place = std::int64_t;

    [[nodiscard]] bool isNeverFilled() const { return isEof() && count_ == 0; }
    [[nodiscard]] bool isRemoved(Place place) const { return removed_.contains(place); }
    bool readRow();
    void release();
    void forward();

    std::shared_ptr<Plan> plan_;
    std::unique_ptr<store::Statement> statement_;  ///< null once all rows are read
    bool keepRows_;
    bool isLive_ = false;  ///< the current row is the statement's
    bool isAtStart_ = true;
    Place place_ = 0;         ///< of the current row in rows_, unless isLive_
    std::int64_t count_ = 0;  ///< rows read and added, without removed ones
    RowBuffer rows_;
    std::set<Place> removed_;
};

}  // namespace ado
