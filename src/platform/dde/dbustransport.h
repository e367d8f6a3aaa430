#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/dde/transport.h"

namespace dde {

class Bus;

/// Conversations over D-Bus: service "ArcView" and topic "System" are the bus name
/// "local.dde.ArcView" and its object "/System", which has the method Execute(s), of whatever
/// interface. A conversation starts no program. All of them share one connection for as long as it
/// is up; a bus that does not answer within a second counts as none.
class DBusTransport : public Transport {
public:
    using Milliseconds = std::chrono::milliseconds;
    static constexpr Milliseconds TimeOut{10'000};    ///< of the other program
    static constexpr Milliseconds BusTimeOut{1'000};  ///< of the bus itself

    /// The bus of that address; without one, the session's as it is at each opening.
    explicit DBusTransport(std::string address = {}, Milliseconds timeOut = TimeOut);
    ~DBusTransport() override;

    [[nodiscard]] std::unique_ptr<Conversation> open(const std::string& service,
                                                     const std::string& topic) override;
    [[nodiscard]] bool isThere(const std::string& service) override;

private:
    void connect(const std::string& service);

    std::string address_;
    Milliseconds timeOut_;
    std::shared_ptr<Bus> bus_;
};

/// "local.dde.ArcView".
[[nodiscard]] std::string busName(const std::string& service);
/// "/System".
[[nodiscard]] std::string objectPath(const std::string& topic);

/// The address of the session's bus; empty where the session has none.
[[nodiscard]] std::string sessionBusAddress();

}  // namespace dde
