#include "platform/dde/transport.h"

#include "platform/dde/dbustransport.h"

namespace dde {

namespace {

Transport*& current() {
    static DBusTransport desktop;
    static Transport* inForce = &desktop;
    return inForce;
}

Transport* const desktopOwn = current();

}  // namespace

Transport& transport() { return *current(); }

void setTransport(Transport* transport) {
    current() = transport != nullptr ? transport : desktopOwn;
}

}  // namespace dde
