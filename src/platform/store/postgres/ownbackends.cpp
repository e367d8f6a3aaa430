#include "platform/store/postgres/ownbackends.h"

#include <mutex>
#include <set>

namespace store::postgres {

namespace {

struct Backends {
    std::mutex mutex;
    std::multiset<int> processes;
};

/// Stays to the very end: a thread may ask that late.
Backends& backends() {
    static auto* const all = new Backends;
    return *all;
}

}  // namespace

OwnBackend::OwnBackend(PGconn* connection) : process_(library().backendPid(connection)) {
    const std::lock_guard lock(backends().mutex);
    backends().processes.insert(process_);
}

OwnBackend::~OwnBackend() {
    const std::lock_guard lock(backends().mutex);
    backends().processes.erase(backends().processes.find(process_));
}

bool isOwnBackend(int process) {
    const std::lock_guard lock(backends().mutex);
    return backends().processes.contains(process);
}

}  // namespace store::postgres
