#pragma once

#include <span>

#include "platform/store/postgres/library.h"

namespace store::postgres {

struct Finish {
    void operator()(PGconn* connection) const { library().finish(connection); }
};
using Connection = std::unique_ptr<PGconn, Finish>;

// On the thread of the forms what is waited for is told after a second, and the user may give up.
// Until then nothing else runs, so that nobody asks the server anything in between.

/// Connects; null where the user gave up. Keys and values as the library takes them, without the
/// null at their end. Where names of machines are looked up is part of the wait.
[[nodiscard]] Connection connected(std::span<const char* const> keys,
                                   std::span<const char* const> values);

/// Waits until the next answer can be taken without waiting; false once the user has given up.
/// What the forms raise meanwhile passes.
[[nodiscard]] bool awaitAnswer(PGconn* connection);

/// Asks the server to leave what it is doing for the connection; does not wait.
void cancel(PGconn* connection);
/// Whether it says something to that.
[[nodiscard]] bool isAnsweredSoon(PGconn* connection);

}  // namespace store::postgres
