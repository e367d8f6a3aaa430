#include "platform/dde/dbustransport.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <filesystem>
#include <optional>
#include <thread>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/notcopied.h"
#include "platform/base/ports.h"
#include "platform/base/wait.h"

namespace dde {

namespace {

using Milliseconds = DBusTransport::Milliseconds;

constexpr Milliseconds Glance{2};  // between two looks whether the answer is there

[[noreturn]] void fail(int number, const std::string& text) {
    throw base::RunTimeError(number, text);
}

[[noreturn]] void failForSilentBus(const std::string& service) {
    fail(errors::NoBus,
         fmt::format("{} cannot be reached: the session's message bus does not answer.", service));
}

bool isReply(const QDBusMessage& message) { return message.type() == QDBusMessage::ReplyMessage; }

}  // namespace

/// A connection of its own to the bus, so that a bus that went away is not remembered. It greets
/// the bus itself: the library's own greeting waits for a bus that hangs.
class Bus : private base::NotCopied {
public:
    explicit Bus(const std::string& address)
        : name_(QStringLiteral("vireo-dde-%1").arg(++count)),
          connection_(QDBusConnection::connectToPeer(QString::fromStdString(address), name_)) {
        greeted_ = connection_.isConnected() &&
                   isReply(call(question("Hello"), DBusTransport::BusTimeOut));
    }
    ~Bus() { QDBusConnection::disconnectFromPeer(name_); }

    [[nodiscard]] bool isUp() const { return greeted_ && connection_.isConnected(); }

    [[nodiscard]] QDBusPendingCall ask(const QDBusMessage& message, Milliseconds timeOut) const {
        return connection_.asyncCall(message, static_cast<int>(timeOut.count()));
    }

    /// Waits for the reply while the forms repaint.
    [[nodiscard]] QDBusMessage call(const QDBusMessage& message, Milliseconds timeOut) const {
        const auto pending = ask(message, timeOut);
        while (!isDoneWithin(pending, timeOut)) {
        }
        return pending.reply();
    }

    /// Waits so long at most; whether the reply is there.
    [[nodiscard]] static bool isDoneWithin(const QDBusPendingCall& pending, Milliseconds time) {
        const auto end = std::chrono::steady_clock::now() + time;
        while (!pending.isFinished() && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(Glance);
            base::ports().repaint();
        }
        return pending.isFinished();
    }

    /// Whether the name has an owner; nothing where the bus does not answer.
    [[nodiscard]] std::optional<bool> hasOwner(const std::string& service) {
        asked_.reset();  // what it answers is older
        return noted(call(ownerQuestion(service), DBusTransport::BusTimeOut));
    }

    /// The same as far as it is known by now, without waiting; asks anew.
    [[nodiscard]] bool hadOwner(const std::string& service) {
        if (asked_ && asked_->isFinished()) {
            noted(asked_->reply());
            asked_.reset();
        }
        if (!asked_) {
            asked_ = ask(ownerQuestion(service), DBusTransport::TimeOut);
        }
        return owned_;
    }

private:
    static QDBusMessage question(const char* member) {
        return QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QLatin1String(member));
    }
    static QDBusMessage ownerQuestion(const std::string& service) {
        auto message = question("NameHasOwner");
        message << QString::fromStdString(busName(service));
        return message;
    }
    std::optional<bool> noted(const QDBusMessage& reply) {
        if (!isReply(reply)) {
            return std::nullopt;
        }
        owned_ = reply.arguments().value(0).toBool();
        return owned_;
    }

    static inline int count = 0;
    QString name_;
    QDBusConnection connection_;
    bool greeted_ = false;
    bool owned_ = false;  ///< what was last known
    std::optional<QDBusPendingCall> asked_;
};

namespace {

class DBusConversation : public Conversation {
public:
    DBusConversation(std::shared_ptr<Bus> bus, std::string service, std::string topic,
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
        const auto pending = bus_->ask(message, timeOut_);
        waitFor(pending);
        if (const auto reply = pending.reply(); reply.type() == QDBusMessage::ErrorMessage) {
            raiseFor(reply);
        }
    }

private:
    /// The bus itself is asked now and then whether it is still alive.
    void waitFor(const QDBusPendingCall& pending) {
        using Clock = std::chrono::steady_clock;
        base::Wait wait(fmt::format("Waiting for {} to take the request.", service_));
        for (auto asked = Clock::now(); !pending.isFinished();) {
            if (!wait.goesOn()) {
                fail(errors::GivenUp,
                     fmt::format("You did not wait until {} took the request.", service_));
            }
            if (Clock::now() - asked < DBusTransport::BusTimeOut) {
                continue;
            }
            if (!bus_->hasOwner(service_)) {
                failForHangingBus();
            }
            asked = Clock::now();
        }
    }
    [[noreturn]] static void failForHangingBus() {
        fail(errors::NoBus, "The session's message bus does not answer any more.");
    }
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
        const auto isThere = bus_->hasOwner(service_);
        if (!isThere) {
            failForHangingBus();
        }
        if (!*isThere) {
            fail(errors::ProgramEnded,
                 fmt::format("{} ended before it answered the request.", service_));
        }
        fail(errors::NoAnswerInTime, fmt::format("{} did not answer within {} seconds.", service_,
                                                 std::chrono::duration<double>(timeOut_).count()));
    }

    std::shared_ptr<Bus> bus_;
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

DBusTransport::~DBusTransport() = default;

std::unique_ptr<Conversation> DBusTransport::open(const std::string& service,
                                                  const std::string& topic) {
    connect(service);
    const auto isThere = bus_->hasOwner(service);
    if (!isThere) {
        failForSilentBus(service);
    }
    if (!*isThere) {
        fail(errors::NobodyThere,
             fmt::format("{} is not running.  Please start it and try again.", service));
    }
    return std::make_unique<DBusConversation>(bus_, service, topic, timeOut_);
}

void DBusTransport::connect(const std::string& service) {
    if (bus_ && bus_->isUp()) {
        return;
    }
    const std::string address = address_.empty() ? sessionBusAddress() : address_;
    if (address.empty()) {
        fail(errors::NoBus, fmt::format("{} cannot be reached: this session has no message bus "
                                        "(DBUS_SESSION_BUS_ADDRESS is not set).",
                                        service));
    }
    bus_ = std::make_shared<Bus>(address);
    if (!bus_->isUp()) {
        failForSilentBus(service);
    }
}

bool DBusTransport::isThere(const std::string& service) {
    if (bus_ && bus_->isUp()) {
        return bus_->hadOwner(service);
    }
    try {
        return open(service, {}) != nullptr;
    } catch (const base::RunTimeError&) {
        return false;
    }
}

}  // namespace dde
