#include "platform/forms/look.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <atomic>

#include "fixture.h"
#include "platform/controls/tones.h"
#include "support/contrast.h"
#include "support/privatebus.h"

namespace {

using controls::Tone;
using forms::Scheme;

/// A desktop that tells programs how it looks.
class DesktopPortal : public QDBusVirtualObject {
public:
    explicit DesktopPortal(const std::string& address) {
        auto connection = QDBusConnection::connectToBus(QString::fromStdString(address), Name);
        connection.registerVirtualObject(Path, this);
        connection.registerService("org.freedesktop.portal.Desktop");
        moveToThread(&thread_);
        thread_.start();
    }
    ~DesktopPortal() override {
        QDBusConnection::disconnectFromBus(Name);
        thread_.quit();
        thread_.wait();
    }
    void turn(const char* key, unsigned value) {
        (QLatin1String(key) == QLatin1String("contrast") ? contrast_ : scheme_) = value;
        auto told =
            QDBusMessage::createSignal(Path, "org.freedesktop.portal.Settings", "SettingChanged");
        told << QString("org.freedesktop.appearance") << QString(key)
             << QVariant::fromValue(QDBusVariant(value));
        QDBusConnection(Name).send(told);
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& asked, const QDBusConnection& connection) override {
        const unsigned value = asked.arguments().value(1) == "contrast" ? contrast_ : scheme_;
        return connection.send(asked.createReply(
            QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(value))))));
    }

private:
    static inline const QString Name = "test-portal";
    static inline const QString Path = "/org/freedesktop/portal/desktop";
    QThread thread_;
    std::atomic<unsigned> scheme_ = 1;
    std::atomic<unsigned> contrast_ = 0;
};

class LookTest : public FormsTest {
protected:
    LookTest() { qputenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str()); }
    ~LookTest() override {
        qputenv("DBUS_SESSION_BUS_ADDRESS", usual_);
        forms::applyLook(app(), Scheme::Light);
    }

    static bool dark() { return controls::isDark(QApplication::palette()); }
    static bool strong() { return controls::isHighContrast(QApplication::palette()); }

    support::PrivateBus bus_;

private:
    QByteArray usual_ = qgetenv("DBUS_SESSION_BUS_ADDRESS");
};

TEST_F(LookTest, FollowsTheDesktopWhileFormsAreOpenUnlessTheUserWantsAnother) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("look.ini");
    DesktopPortal desktop(bus_.address());
    forms::followDesktop(app(), file);
    EXPECT_TRUE(dark() && !strong());

    const DemoForm& form = shown("frmTarn");
    log.clear();
    desktop.turn("color-scheme", 2);
    EXPECT_TRUE(QTest::qWaitFor([] { return !dark(); }));
    settle();
    EXPECT_THAT(log, testing::Contains("frmTarn dressed"));
    EXPECT_FALSE(controls::isDark(form.button.palette()));
    desktop.turn("contrast", 1);
    EXPECT_TRUE(QTest::qWaitFor([] { return strong(); }));

    forms::wantScheme(Scheme::Dark);
    EXPECT_TRUE(dark() && !strong());
    forms::followDesktop(app(), file);
    EXPECT_EQ(forms::wantedScheme(), Scheme::Dark);
    EXPECT_TRUE(dark() && !strong());
    forms::wantScheme(Scheme::FollowDesktop);
    EXPECT_TRUE(!dark() && strong());
}

TEST_F(LookTest, ABusThatHangsLeavesThePalettesOwnLook) {
    bus_.hang();
    forms::followDesktop(app());
    EXPECT_FALSE(dark());
}

TEST_F(LookTest, EveryTextStandsOutFromEveryGround) {
    for (const auto scheme : {Scheme::Light, Scheme::Dark, Scheme::HighContrast}) {
        forms::applyLook(app(), scheme);
        const QPalette palette = QApplication::palette();
        const double least = strong() ? 7 : 4.5;
        for (const auto ground : {QPalette::Window, QPalette::Base, QPalette::AlternateBase,
                                  QPalette::Button, QPalette::ToolTipBase}) {
            const QColor on = palette.color(ground);
            for (const auto ink : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText,
                                   QPalette::ToolTipText, QPalette::PlaceholderText}) {
                EXPECT_GE(support::contrastOf(palette.color(ink), on), least) << ink << ground;
            }
            EXPECT_GE(support::contrastOf(controls::focusInk(palette), on), 3) << ground;
        }
        EXPECT_GE(support::contrastOf(palette.color(QPalette::Link), palette.base().color()), 4.5);
        EXPECT_GE(support::contrastOf(palette.color(QPalette::HighlightedText),
                                      palette.color(QPalette::Highlight)),
                  least);
        for (const auto tone : {Tone::Look, Tone::Wrong}) {
            for (const auto& on :
                 {groundOf(tone, palette), palette.window().color(), palette.base().color()}) {
                EXPECT_GE(support::contrastOf(inkOf(tone, palette), on), least);
            }
        }
    }
}

}  // namespace
