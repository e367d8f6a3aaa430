#include "platform/forms/look.h"

#include <QPalette>
#include <QSettings>
#include <memory>
#include <utility>

#include "platform/controls/signs.h"
#include "platform/controls/tones.h"
#include "platform/forms/desktopwish.h"
#include "platform/forms/flatstyle.h"

namespace forms {

namespace {

struct Colours {
    QColor window, base, alternate, text, quiet, pale, button, line, accent, onAccent, tip, link;
};

const Colours Light{"#f4f5f7", "#ffffff", "#f2f6fb", "#1d2126", "#5f6771", "#8b929b",
                    "#ffffff", "#c3c8cf", "#1f6fd1", "#ffffff", "#fffbe6", "#1f6fd1"};
const Colours Dark{"#23262b", "#1a1c20", "#212429", "#e7e9ec", "#a3abb5", "#7d848e",
                   "#32363d", "#4a5059", "#2f73c8", "#ffffff", "#3a3d43", "#7fb0ee"};
// Every text at least 7:1, every line as strong as the text.
const Colours StrongLight{"#ffffff", "#ffffff", "#ffffff", "#000000", "#333333", "#595959",
                          "#ffffff", "#000000", "#003e92", "#ffffff", "#ffffff", "#003e92"};
const Colours StrongDark{"#000000", "#000000", "#000000", "#ffffff", "#d6d6d6", "#a6a6a6",
                         "#000000", "#ffffff", "#ffe14d", "#000000", "#000000", "#ffe14d"};

const Colours& coloursOf(const DesktopWish& wish) {
    return wish.highContrast ? (wish.dark ? StrongDark : StrongLight) : wish.dark ? Dark : Light;
}

QPalette paletteOf(const Colours& colours) {
    constexpr int Deeper = 115;
    QPalette palette(colours.text, colours.button, colours.base.lighter(130), colours.line,
                     colours.line.darker(Deeper), colours.text, Qt::white, colours.base,
                     colours.window);
    palette.setColor(QPalette::AlternateBase, colours.alternate);
    palette.setColor(QPalette::Mid, colours.line);
    palette.setColor(QPalette::Midlight, colours.alternate);
    palette.setColor(QPalette::Highlight, colours.accent);
    palette.setColor(QPalette::HighlightedText, colours.onAccent);
    palette.setColor(QPalette::Link, colours.link);
    palette.setColor(QPalette::PlaceholderText, colours.quiet);
    palette.setColor(QPalette::ToolTipBase, colours.tip);
    palette.setColor(QPalette::ToolTipText, colours.text);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText}) {
        palette.setColor(QPalette::Disabled, role, colours.pale);
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, colours.window);
    palette.setColor(QPalette::Disabled, QPalette::Button, colours.window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.line);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, colours.text);
    return palette;
}

/// What the desktop wishes, unless the user wants something else.
DesktopWish inForce(Scheme scheme, const DesktopWish& desktop) {
    switch (scheme) {
        case Scheme::Light:
            return {.dark = false, .highContrast = false};
        case Scheme::Dark:
            return {.dark = true, .highContrast = false};
        case Scheme::HighContrast:
            return {.dark = desktop.dark, .highContrast = true};
        case Scheme::FollowDesktop:
            break;
    }
    return desktop;
}

constexpr auto SchemeKey = "look/scheme";

/// As they stand in the file.
constexpr std::pair<Scheme, const char*> SchemeNames[]{{Scheme::FollowDesktop, "desktop"},
                                                       {Scheme::Light, "light"},
                                                       {Scheme::Dark, "dark"},
                                                       {Scheme::HighContrast, "high contrast"}};

Scheme schemeNamed(const QString& name) {
    for (const auto& [scheme, known] : SchemeNames) {
        if (name == QLatin1String(known)) {
            return scheme;
        }
    }
    return Scheme::FollowDesktop;
}

/// What the look of a running program depends on.
class Following {
public:
    Following(QApplication& application, QString file)
        : application_(application), file_(std::move(file)), desktop_(&application) {
        if (!file_.isEmpty()) {
            wanted_ =
                schemeNamed(QSettings(file_, QSettings::IniFormat).value(SchemeKey).toString());
        }
        desktop_.onChange([this] { show(); });
    }

    [[nodiscard]] Scheme wanted() const { return wanted_; }
    void want(Scheme scheme) {
        wanted_ = scheme;
        for (const auto& [known, name] : SchemeNames) {
            if (known == scheme && !file_.isEmpty()) {
                QSettings(file_, QSettings::IniFormat).setValue(SchemeKey, QLatin1String(name));
            }
        }
        show();
    }
    void show() const {
        const QPalette palette = paletteOf(coloursOf(inForce(wanted_, desktop_.wish())));
        if (application_.palette() != palette) {
            application_.setPalette(palette);
        }
    }

private:
    QApplication& application_;
    QString file_;
    Desktop desktop_;
    Scheme wanted_ = Scheme::FollowDesktop;
};

std::unique_ptr<Following>& following() {
    static std::unique_ptr<Following> one;
    return one;
}

}  // namespace

void applyLook(QApplication& application, Scheme scheme) {
    following().reset();
    const DesktopWish desktop{.dark = controls::isDark(application.palette())};
    application.setStyle(new FlatStyle);
    application.setPalette(paletteOf(coloursOf(inForce(scheme, desktop))));
    application.setWindowIcon(controls::programIcon());
}

void followDesktop(QApplication& application, const QString& file) {
    following().reset();
    following() = std::make_unique<Following>(application, file);
    QObject::connect(&application, &QObject::destroyed, [] { following().reset(); });
    application.setStyle(new FlatStyle);
    application.setWindowIcon(controls::programIcon());
    following()->show();
}

Scheme wantedScheme() {
    return following() == nullptr ? Scheme::FollowDesktop : following()->wanted();
}

void wantScheme(Scheme scheme) {
    if (following() != nullptr) {
        following()->want(scheme);
    }
}

}  // namespace forms
