#include "platform/controls/refused.h"

#include <QWidget>

namespace controls {

void showRefused(QWidget& control, bool refused) {
    QPalette palette;
    if (refused) {
        palette.setColor(QPalette::Base, QColor(255, 0, 0));
        palette.setColor(QPalette::Button, QColor(255, 0, 0));
        palette.setColor(QPalette::Text, Qt::white);
        palette.setColor(QPalette::PlaceholderText, Qt::white);
    }
    control.setPalette(palette);
}

}  // namespace controls
