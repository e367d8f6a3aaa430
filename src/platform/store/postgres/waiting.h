#pragma once

#include <string>

#include "platform/store/postgres/library.h"

namespace store::postgres {

struct Finish {
    void operator()(PGconn* connection) const { library().finish(connection); }
};
using Connection = std::unique_ptr<PGconn, Finish>;

// On the thread of the forms what is waited for is told after a second, and the user may give up.
// Until then nothing else runs, so that nobody asks the server anything in between.

/// Connects to what an address says ("postgresql://office/vireo"); null where the user gave up.
/// Looking up the names of machines is part of the wait.
[[nodiscard]] Connection connected(const std::string& address);
/// The same without any wait that could be given up, for other threads.
[[nodiscard]] Connection connectedAnyhow(const std::string& address);

/// Waits until the next answer can be taken without waiting; false once the user has given up.
/// What the forms raise meanwhile passes.
[[nodiscard]] bool awaitAnswer(PGconn* connection);

/// Asks the server to leave what it is doing for the connection; does not wait.
void cancel(PGconn* connection);
/// Whether it says something to that.
[[nodiscard]] bool isAnsweredSoon(PGconn* connection);

}  // namespace store::postgres
