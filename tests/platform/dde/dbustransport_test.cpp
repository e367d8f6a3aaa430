#include "platform/dde/dbustransport.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QThread>
#include <atomic>
#include <mutex>

#include <gmock/gmock.h>

#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "support/privatebus.h"

namespace {

using namespace std::chrono_literals;

/// The other side of a conversation, on a thread of its own; what it does depends on the command.
class OtherSide : public QDBusVirtualObject {
public:
    explicit OtherSide(const std::string& address) {
        auto connection = QDBusConnection::connectToBus(QString::fromStdString(address), Name);
        connection.registerVirtualObject(QStringLiteral("/System"), this);
        connection.registerService(QStringLiteral("local.dde.ArcView"));
        moveToThread(&thread_);
        thread_.start();
    }
    ~OtherSide() override {
        leave();
        thread_.quit();
        thread_.wait();
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const auto command = message.arguments().value(0).toString().toStdString();
        {
            const std::lock_guard lock(mutex_);
            taken_.push_back(message.member().toStdString() + " " + command);
        }
        if (command == "refuse") {
            connection.send(message.createErrorReply(QDBusError::Failed, "no such script"));
        } else if (command == "die") {
            leave();
        } else if (command != "silence") {
            connection.send(message.createReply());
        }
        return true;
    }
    void leave() { QDBusConnection::disconnectFromBus(Name); }

    std::vector<std::string> taken() {
        const std::lock_guard lock(mutex_);
        return taken_;
    }

private:
    static inline const QString Name = QStringLiteral("other-side");
    QThread thread_;
    std::mutex mutex_;
    std::vector<std::string> taken_;
};

/// What a piece of work raises: "number: text", or "" for nothing.
template <class Work>
std::string faultOf(Work work) {
    try {
        work();
    } catch (const base::RunTimeError& error) {
        return std::to_string(error.number()) + ": " + error.what();
    }
    return "";
}

class DBusTransport : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static int argc = 1;
        static char name[] = "test_dde";
        static char* argv[] = {name, nullptr};
        static QCoreApplication application(argc, argv);
    }

    support::PrivateBus bus;
    dde::DBusTransport transport{bus.address(), 10s};
    dde::DBusTransport impatient{bus.address(), 300ms};
};

TEST_F(DBusTransport, CarriesCommandsInOrderAsTheyAre) {
    OtherSide map(bus.address());
    const auto conversation = transport.open("ArcView", "System");
    conversation->Execute("av.Run(\"StartRun\", {\"Größe 1/2|3\"})");
    conversation->Execute("");
    EXPECT_THAT(map.taken(), testing::ElementsAre("Execute av.Run(\"StartRun\", {\"Größe 1/2|3\"})",
                                                  "Execute "));
    EXPECT_TRUE(transport.isThere("ArcView"));
}

TEST_F(DBusTransport, EachFaultIsItsOwnErrorWithAClearText) {
    OtherSide map(bus.address());
    const auto conversation = transport.open("ArcView", "System");
    EXPECT_EQ(faultOf([&] { conversation->Execute("refuse"); }),
              "285: ArcView refused the request: no such script");
    EXPECT_EQ(faultOf([&] { impatient.open("ArcView", "System")->Execute("silence"); }),
              "286: ArcView did not answer within 0.3 seconds.");
    EXPECT_EQ(faultOf([&] { conversation->Execute("die"); }),
              "284: ArcView ended before it answered the request.");
    EXPECT_EQ(faultOf([&] { conversation->Execute("more"); }), "284: ArcView has ended.");
    EXPECT_EQ(faultOf([&] { static_cast<void>(transport.open("ArcView", "System")); }),
              "282: ArcView is not running.  Please start it and try again.");
    EXPECT_FALSE(transport.isThere("ArcView"));
}

TEST_F(DBusTransport, ABusThatGoesAwayAndASessionWithoutOneAreTold) {
    OtherSide map(bus.address());
    const auto conversation = transport.open("ArcView", "System");
    bus.end();
    EXPECT_THAT(faultOf([&] { conversation->Execute("anything"); }), testing::StartsWith("281: "));
    EXPECT_EQ(faultOf([&] { static_cast<void>(transport.open("ArcView", "System")); }),
              "281: ArcView cannot be reached: the session's message bus does not answer.");

    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_THAT(faultOf([&] { static_cast<void>(dde::DBusTransport().open("ArcView", "System")); }),
                testing::StartsWith("281: ArcView cannot be reached: this session has no message"));
    EXPECT_FALSE(dde::DBusTransport().isThere("ArcView"));
}

TEST_F(DBusTransport, AfterASecondTheUserIsAskedToWaitAndMayGiveUp) {
    struct Box : base::WaitBox {
        bool goesOn() override { return ++turns < 3; }
        int turns = 0;
    };
    std::vector<std::string> told;
    auto& port = base::ports().waitBox;
    const auto before = std::exchange(port, [&](const std::string& text) {
        told.push_back(text);
        return std::make_unique<Box>();
    });
    OtherSide map(bus.address());
    const auto conversation = transport.open("ArcView", "System");
    conversation->Execute("at once");
    EXPECT_THAT(told, testing::IsEmpty());
    EXPECT_EQ(faultOf([&] { conversation->Execute("silence"); }),
              "287: You did not wait until ArcView took the request.");
    EXPECT_THAT(told, testing::ElementsAre("Waiting for ArcView to take the request."));
    conversation->Execute("afterwards");
    port = before;
}

/// How often the forms could repaint while a piece of work went on.
template <class Work>
int repaintsDuring(Work work) {
    int repaints = 0;
    const auto before = std::exchange(base::ports().repaint, [&] { ++repaints; });
    work();
    base::ports().repaint = before;
    return repaints;
}

TEST_F(DBusTransport, FormsRepaintWhileItWaitsAlsoForABusThatHangs) {
    OtherSide map(bus.address());
    const auto conversation = impatient.open("ArcView", "System");
    EXPECT_GT(
        repaintsDuring([&] { EXPECT_NE(faultOf([&] { conversation->Execute("silence"); }), ""); }),
        10);
    bus.hang();
    EXPECT_EQ(repaintsDuring([&] {
                  EXPECT_TRUE(impatient.isThere("ArcView"));
                  EXPECT_TRUE(impatient.isThere("ArcView"));
              }),
              0);
    const auto silent = testing::StartsWith("281: ");
    EXPECT_GT(repaintsDuring([&] {
                  EXPECT_THAT(faultOf([&] { conversation->Execute("anything"); }), silent);
                  for (auto* each : {&impatient, &transport}) {  // connected, and not yet
                      EXPECT_THAT(faultOf([&] { (void)each->open("ArcView", "System"); }), silent);
                  }
              }),
              30);
}

}  // namespace
