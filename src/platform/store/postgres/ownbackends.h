#pragma once

#include "platform/store/postgres/library.h"

namespace store::postgres {

/// One of the server's processes that work for this program, while it lives.
class OwnBackend {
public:
    explicit OwnBackend(PGconn* connection);
    ~OwnBackend();
    OwnBackend(const OwnBackend&) = delete;
    OwnBackend& operator=(const OwnBackend&) = delete;

private:
    int process_;
};

/// Whether a process of the server's works for this program. From any thread.
[[nodiscard]] bool isOwnBackend(int process);

}  // namespace store::postgres
