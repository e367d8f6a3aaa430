#include "platform/forms/desktopwish.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <set>
#include <thread>
#include <utility>

#include "platform/base/notcopied.h"
#include "platform/controls/tones.h"

namespace forms {

namespace {

using namespace std::chrono_literals;

constexpr auto FirstWord = 60ms;
constexpr auto Glance = 1ms;
constexpr int TimeOutMs = 10'000;

constexpr QLatin1String PortalService("org.freedesktop.portal.Desktop");
constexpr QLatin1String PortalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String PortalInterface("org.freedesktop.portal.Settings");
constexpr QLatin1String Appearance("org.freedesktop.appearance");
constexpr QLatin1String ColourScheme("color-scheme");
constexpr QLatin1String Contrast("contrast");
constexpr QLatin1String ConnectionName("vireo-look");
constexpr unsigned PrefersDark = 1;
constexpr unsigned PrefersContrast = 1;

/// A variant may be wrapped in another one.
QVariant unwrapped(QVariant value) {
    while (value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

/// What the user has set for GTK programs, of the newest version that has settings.
DesktopWish wishByGtk() {
    const QDir config(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    for (const auto* name : {"gtk-4.0/settings.ini", "gtk-3.0/settings.ini"}) {
        if (config.exists(name)) {
            QSettings settings(config.filePath(name), QSettings::IniFormat);
            settings.beginGroup("Settings");
            const QString theme = settings.value("gtk-theme-name").toString().toLower();
            return {.dark = settings.value("gtk-application-prefer-dark-theme").toBool() ||
                            theme.endsWith("dark") || theme.endsWith("inverse"),
                    .highContrast = theme.startsWith("highcontrast")};
        }
    }
    return {};
}

}  // namespace

/// The desktop's settings as its portal tells them. The connection greets the bus itself, because
/// the library's own greeting waits for a bus that hangs.
class Desktop::Portal : private base::NotCopied {
public:
    /// What the portal tells by itself reaches the listener's slot hear().
    Portal(const QString& address, QObject& listener, std::function<void()> told)
        : bus_(QDBusConnection::connectToPeer(address, ConnectionName)), told_(std::move(told)) {
        if (!bus_.isConnected()) {
            return;
        }
        bus_.asyncCall(toBus("Hello"), TimeOutMs);
        auto match = toBus("AddMatch");
        match << QStringLiteral("type='signal',interface='%1',member='SettingChanged',arg0='%2'")
                     .arg(PortalInterface, Appearance);
        bus_.asyncCall(match, TimeOutMs);
        bus_.connect(QString(), PortalPath, PortalInterface, "SettingChanged", &listener,
                     SLOT(hear(QDBusMessage)));
        const std::array asked{ask(ColourScheme), ask(Contrast)};
        const auto end = std::chrono::steady_clock::now() + FirstWord;
        while (!std::ranges::all_of(asked, &QDBusPendingCall::isFinished) &&
               std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(Glance);
        }
        take(ColourScheme, asked[0]);
        take(Contrast, asked[1]);
    }
    ~Portal() { QDBusConnection::disconnectFromPeer(ConnectionName); }

    /// Nothing where nobody answers.
    [[nodiscard]] std::optional<bool> isDark() const { return isDark_; }
    [[nodiscard]] bool isHighContrast() const { return isHighContrast_; }

    void note(const QDBusMessage& changed) {
        const auto facts = changed.arguments();
        if (facts.value(0) == QString(Appearance)) {
            set(facts.value(1).toString(), facts.value(2));
        }
    }

private:
    static QDBusMessage toBus(const char* member) {
        return QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                              "org.freedesktop.DBus", member);
    }
    QDBusPendingCall ask(const QString& key) {
        auto question =
            QDBusMessage::createMethodCall(PortalService, PortalPath, PortalInterface, "Read");
        question << QString(Appearance) << key;
        auto call = bus_.asyncCall(question, TimeOutMs);
        auto* watcher = new QDBusPendingCallWatcher(call, &life_);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &life_,
                         [this, key](QDBusPendingCallWatcher* answered) {
                             take(key, *answered);
                             answered->deleteLater();
                         });
        return call;
    }
    /// Each answer counts once: what changed since then is newer.
    void take(const QString& key, const QDBusPendingCall& call) {
        if (call.isFinished() && !call.isError() && heard_.insert(key).second) {
            set(key, call.reply().arguments().value(0));
        }
    }
    void set(const QString& key, const QVariant& value) {
        const unsigned wish = unwrapped(value).toUInt();
        const auto before = std::pair(isDark_, isHighContrast_);
        if (key == ColourScheme) {
            isDark_ = wish == PrefersDark;
        } else if (key == Contrast) {
            isHighContrast_ = wish == PrefersContrast;
        }
        if (before != std::pair(isDark_, isHighContrast_)) {
            told_();
        }
    }

    QDBusConnection bus_;
    std::function<void()> told_;
    std::set<QString> heard_;
    std::optional<bool> isDark_;
    bool isHighContrast_ = false;
    QObject life_;  ///< ends what waits for answers
};

Desktop::Desktop(QApplication* application)
    : isDarkByPalette_(controls::isDark(QApplication::palette())) {
    if (const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
        !address.isEmpty()) {
        portal_ = std::make_unique<Portal>(address, *this, [this] { tell(); });
    }
    application->installEventFilter(this);
}

Desktop::~Desktop() = default;

DesktopWish Desktop::wish() const {
    if (const auto dark = portal_ ? portal_->isDark() : std::nullopt) {
        return {.dark = *dark, .highContrast = portal_->isHighContrast()};
    }
    const DesktopWish set = wishByGtk();
    return {.dark = set.dark || isDarkByPalette_, .highContrast = set.highContrast};
}

void Desktop::hear(const QDBusMessage& changed) {
    if (portal_) {
        portal_->note(changed);
    }
}

void Desktop::tell() {
    if (told_) {
        told_();
    }
}

/// The toolkit tells the windows that the desktop's theme is another one.
bool Desktop::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ThemeChange && watched->isWindowType() && !isReading_) {
        isReading_ = true;
        QApplication::setPalette({});  // the desktop's own
        isDarkByPalette_ = controls::isDark(QApplication::palette());
        isReading_ = false;
        tell();
    }
    return false;
}

}  // namespace forms
