#include "platform/ado/cursor.h"

#include <utility>

namespace ado {

Cursor::Cursor(BoundStatement bound, bool keepRows)
    : plan_(std::move(bound.plan)),
      statement_(std::move(bound.statement)),
      keepRows_(keepRows),
      rows_(statement_->columnCount()) {
    isLive_ = readRow() && !keepRows_;
}

Cursor::~Cursor() { release(); }

void Cursor::release() {
    if (statement_ != nullptr) {
        plan_->giveBack(std::move(statement_));
    }
}

/// The statement's next row, copied where rows are kept; false after the last.
bool Cursor::readRow() {
    if (statement_ == nullptr) {
        return false;
    }
    if (!statement_->step()) {
        release();
        return false;
    }
    ++count_;
    if (keepRows_) {
        rows_.append(*statement_);
    }
    return true;
}

bool Cursor::isOnRow() const { return !isEof() && place_ >= 0 && !isRemoved(place_); }

void Cursor::forward() {
    if (std::exchange(isLive_, false)) {
        isLive_ = readRow();
        return;
    }
    ++place_;
    if (place_ >= static_cast<Place>(rows_.size())) {
        readRow();
    }
}

void Cursor::moveNext() {
    isAtStart_ = false;
    do {
        forward();
    } while (!isEof() && isRemoved(place_));
}

void Cursor::movePrevious() {
    do {
        --place_;
    } while (place_ >= 0 && isRemoved(place_));
}

void Cursor::moveFirst() {
    place_ = -1;
    moveNext();
}

void Cursor::moveLast() {
    drain();
    place_ = static_cast<Place>(rows_.size());
    movePrevious();
}

std::int64_t Cursor::count() {
    drain();
    return count_;
}

void Cursor::drain() {
    if (statement_ == nullptr) {
        return;
    }
    keepRows_ = true;
    if (std::exchange(isLive_, false)) {
        rows_.append(*statement_);
    }
    while (readRow()) {
    }
}

void Cursor::append(const std::vector<base::Value>& stored) {
    place_ = static_cast<Place>(rows_.size());
    rows_.append(stored);
    ++count_;
}

void Cursor::markRemoved() {
    removed_.insert(place_);
    --count_;
}

}  // namespace ado
