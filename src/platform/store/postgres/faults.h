#pragma once

#include <string>

#include "platform/store/postgres/library.h"

namespace store::postgres {

/// The open file as faults name it.
struct Source {
    std::string path;
    int lockTimeoutMs = 0;
};

/// Whether an answer says that the connection is gone, and with it all that was under way.
[[nodiscard]] bool isLost(PGconn* connection, const PGresult* answer);

/// Whether an answer is a fault.
[[nodiscard]] bool isFault(const PGresult* answer);

/// The five characters by which the server tells faults apart; empty where it could not tell any
/// more.
[[nodiscard]] std::string stateOf(const PGresult* answer);

/// Raises what an answer stands for: a StoreError, or the RunTimeError that a function of the
/// dialect raised there.
[[noreturn]] void raiseFault(const Source& source, const PGresult* answer);

/// Raises StoreError for a connection that could not be made.
[[noreturn]] void raiseUnreachable(const Source& source, PGconn* connection);

/// Raises StoreError: Lost. `what` says what became of the change.
[[noreturn]] void raiseLost(const Source& source, const std::string& what);

/// Raises StoreError: GivenUp. `what` says what became of the change.
[[noreturn]] void raiseGivenUp(const Source& source, const std::string& what);

[[noreturn]] void raiseLocked(const Source& source);

}  // namespace store::postgres
