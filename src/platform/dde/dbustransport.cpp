#include "platform/dde/dbustransport.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <filesystem>
#include <thread>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/ports.h"

namespace dde {

namespace {

using Milliseconds = DBusTransport::Milliseconds;

constexpr Milliseconds Glance{2};  // between two looks whether the answer is there

[[noreturn]] void fail(int number, const std::string& text) {
    throw base::RunTimeError(number, text);
}

/// A connection of its own to the bus, so that a bus that went away is not remembered.
class Bus {
public:
    explicit Bus(const std::string& address)
        : name_(QStringLiteral("vireo-dde-%1").arg(++count)),
          connection_(QDBusConnection::connectToBus(QString::fromStdString(address), name_)) {}
    ~Bus() { QDBusConnection::disconnectFromBus(name_); }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    [[nodiscard]] bool isUp() const { return connection_.isConnected(); }
    [[nodiscard]] const QDBusConnection& operator*() const { return connection_; }

    /// Waits for the reply while the forms repaint.
    [[nodiscard]] QDBusMessage call(const QDBusMessage& message, Milliseconds timeOut) const {
        const auto pending = connection_.asyncCall(message, static_cast<int>(timeOut.count()));
        while (!pending.isFinished()) {
            std::this_thread::sleep_for(Glance);
            base::ports().repaint();
        }
        return pending.reply();
    }

    [[nodiscard]] bool hasOwner(const QString& name, Milliseconds timeOut) const {
        auto question = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
        question << name;
        const QDBusMessage reply = call(question, timeOut);
        return reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool();
    }

private:
    static inline int count = 0;
    QString name_;
    QDBusConnection connection_;
};

class DBusConversation : public Conversation {
public:
    DBusConversation(std::unique_ptr<Bus> bus, std::string service, std::string topic,
                     Milliseconds timeOut)
        : bus_(std::move(bus)),
          service_(std::move(service)),
          topic_(std::move(topic)),
          timeOut_(timeOut) {}

    void Execute(const std::string& command) override {
        auto message = QDBusMessage::createMethodCall(QString::fromStdString(busName(service_)),
                                                      QString::fromStdString(objectPath(topic_)),
                                                      QString(), QStringLiteral("Execute"));
        message.setAutoStartService(false);
        message << QString::fromStdString(command);
        const QDBusMessage reply = bus_->call(message, timeOut_);
        if (reply.type() == QDBusMessage::ErrorMessage) {
            raiseFor(reply);
        }
    }

private:
    [[noreturn]] void raiseFor(const QDBusMessage& reply) const {
        const auto is = [&](const char* name) {
            return reply.errorName() ==
                   QLatin1String("org.freedesktop.DBus.Error.") + QLatin1String(name);
        };
        if (!bus_->isUp() || is("Disconnected")) {
            fail(errors::NoBus, "The desktop's message bus went away before the request was sent.");
        }
        if (is("ServiceUnknown") || is("NameHasNoOwner")) {
            fail(errors::ProgramEnded, fmt::format("{} has ended.", service_));
        }
        if (is("NoReply") || is("Timeout") || is("TimedOut")) {
            raiseForSilence();
        }
        fail(errors::Refused, fmt::format("{} refused the request: {}", service_,
                                          reply.errorMessage().toStdString()));
    }

    /// The bus says the same of a program that ended and of one that takes too long.
    [[noreturn]] void raiseForSilence() const {
        if (!bus_->hasOwner(QString::fromStdString(busName(service_)), timeOut_)) {
            fail(errors::ProgramEnded,
                 fmt::format("{} ended before it answered the request.", service_));
        }
        fail(errors::NoAnswerInTime, fmt::format("{} did not answer within {} seconds.", service_,
                                                 std::chrono::duration<double>(timeOut_).count()));
    }

    std::unique_ptr<Bus> bus_;
    std::string service_;
    std::string topic_;
    Milliseconds timeOut_;
};

}  // namespace

std::string busName(const std::string& service) { return "local.dde." + service; }

std::string objectPath(const std::string& topic) { return "/" + topic; }

std::string sessionBusAddress() {
    const QString named = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!named.isEmpty()) {
        return named.toStdString();
    }
    // Without an address the library would try to start a bus of its own, on any display it finds.
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const std::string socket = folder.toStdString() + "/bus";
    std::error_code error;
    return !folder.isEmpty() && std::filesystem::is_socket(socket, error) ? "unix:path=" + socket
                                                                          : "";
}

DBusTransport::DBusTransport(std::string address, Milliseconds timeOut)
    : address_(std::move(address)), timeOut_(timeOut) {}

std::unique_ptr<Conversation> DBusTransport::open(const std::string& service,
                                                  const std::string& topic) {
    const std::string address = address_.empty() ? sessionBusAddress() : address_;
    if (address.empty()) {
        fail(errors::NoBus, fmt::format("{} cannot be reached: this session has no message bus "
                                        "(DBUS_SESSION_BUS_ADDRESS is not set).",
                                        service));
    }
    auto bus = std::make_unique<Bus>(address);
    if (!bus->isUp()) {
        fail(errors::NoBus,
             fmt::format("{} cannot be reached: the session's message bus does not answer.",
                         service));
    }
    if (!bus->hasOwner(QString::fromStdString(busName(service)), timeOut_)) {
        fail(errors::NobodyThere,
             fmt::format("{} is not running.  Please start it and try again.", service));
    }
    return std::make_unique<DBusConversation>(std::move(bus), service, topic, timeOut_);
}

bool DBusTransport::isThere(const std::string& service) {
    try {
        return open(service, {}) != nullptr;
    } catch (const base::RunTimeError&) {
        return false;
    }
}

}  // namespace dde
