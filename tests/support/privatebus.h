#pragma once

#include <string>

#include <sys/types.h>

namespace support {

/// A message bus of its own, a real daemon, ended with everything on it at the end.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] const std::string& address() const { return address_; }
    /// Ends the daemon now.
    void end();

private:
    pid_t daemon_ = 0;
    std::string address_;
};

}  // namespace support
