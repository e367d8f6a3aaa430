#pragma once

#include <string>

#include "support/childprogram.h"

namespace support {

/// A message bus of its own, a real daemon, ended with everything on it at the end.
class PrivateBus {
public:
    PrivateBus() : address_(daemon_.readLine()) {}

    [[nodiscard]] const std::string& address() const { return address_; }
    /// Ends the daemon now.
    void end() { daemon_.kill(); }
    /// From now on it takes everything and answers nothing.
    void hang() const { daemon_.hang(); }

private:
    ChildProgram daemon_{"dbus-daemon", {"--session", "--nofork", "--print-address"}};
    std::string address_;
};

}  // namespace support
