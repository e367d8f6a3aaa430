#pragma once

#include "platform/ado/connection.h"

namespace map {

/// One unit of work of which nothing stays unless it was finished.
class AllOrNothing {
public:
    explicit AllOrNothing(ado::Connection& connection) : connection_(connection) {
        connection_.BeginTrans();
    }
    ~AllOrNothing() {
        if (!finished_) {
            connection_.RollbackTrans();
        }
    }
    AllOrNothing(const AllOrNothing&) = delete;
    AllOrNothing& operator=(const AllOrNothing&) = delete;

    void finish() {
        connection_.CommitTrans();
        finished_ = true;
    }

private:
    ado::Connection& connection_;
    bool finished_ = false;
};

}  // namespace map
