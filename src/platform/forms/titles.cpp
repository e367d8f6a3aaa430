#include "platform/forms/titles.h"

#include <QGuiApplication>
#include <QStringList>

namespace forms {

void endTitlesWith(const std::vector<std::string>& parts) {
    QStringList shown;
    for (const std::string& part : parts) {
        if (!part.empty()) {
            shown.append(QString::fromStdString(part));
        }
    }
    QGuiApplication::setApplicationDisplayName(shown.join(QStringLiteral(" \u2014 ")));
}

}  // namespace forms
