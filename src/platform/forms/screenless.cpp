#include "platform/forms/screenless.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace forms {

constexpr auto Platform = "QT_QPA_PLATFORM";
constexpr int Dpi = 96;

ScreenlessScreen::ScreenlessScreen(QSize size) : platform_(qgetenv(Platform)) {
    if (platform_ != "offscreen" || !description_.open()) {
        return;
    }
    const QJsonObject screen{{"name", "none"},
                             {"x", 0},
                             {"y", 0},
                             {"width", size.width()},
                             {"height", size.height()},
                             {"logicalDpi", Dpi},
                             {"logicalBaseDpi", Dpi},
                             {"dpr", 1}};
    description_.write(QJsonDocument(QJsonObject{{"screens", QJsonArray{screen}}}).toJson());
    description_.close();
    qputenv(Platform, "offscreen:configfile=" + description_.fileName().toLocal8Bit());
}

// Programs that this one starts find the platform as it was given.
ScreenlessScreen::~ScreenlessScreen() {
    if (!platform_.isEmpty()) {
        qputenv(Platform, platform_);
    }
}

}  // namespace forms
