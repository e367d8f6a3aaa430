#pragma once

#include <memory>

#include "platform/ado/connection.h"

namespace startup {

/// A global that holds one connection or none. Used like a pointer; using it while it holds none
/// raises "Object variable not set" (91) instead of ending in a crash.
class ConnectionGlobal {
public:
    ConnectionGlobal& operator=(std::unique_ptr<ado::Connection> connection);

    [[nodiscard]] ado::Connection& operator*() const;
    ado::Connection* operator->() const { return &**this; }
    [[nodiscard]] explicit operator bool() const { return isSet_; }

    /// Lets go of the connection. The object itself stays until another takes its place: what still
    /// unwinds (a unit of work) may hold it.
    void release() { isSet_ = false; }

private:
    std::unique_ptr<ado::Connection> connection_;
    bool isSet_ = false;
};

}  // namespace startup
