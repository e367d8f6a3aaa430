#include "startup/base/connectionglobal.h"

#include "platform/base/error.h"

namespace startup {

ConnectionGlobal& ConnectionGlobal::operator=(std::unique_ptr<ado::Connection> connection) {
    connection_ = std::move(connection);
    isSet_ = connection_ != nullptr;
    return *this;
}

ado::Connection& ConnectionGlobal::operator*() const {
    if (!isSet_) {
        base::raise(base::errors::ObjectNotSet);
    }
    return *connection_;
}

}  // namespace startup
