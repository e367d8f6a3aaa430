#include <QPainter>
#include <QPixmap>

#include "platform/forms/look.h"

namespace forms {

namespace {

/// A school bus from its left side on a square of 64 units.
QPixmap busPixmap(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 64.0, size / 64.0);
    painter.setPen(Qt::NoPen);

    painter.setBrush(QColor("#f2b01e"));
    painter.drawRoundedRect(QRectF(3, 14, 49, 34), 5, 5);
    painter.drawRoundedRect(QRectF(44, 29, 18, 19), 4, 4);
    painter.setBrush(QColor("#22304a"));
    for (const int x : {8, 19, 30}) {
        painter.drawRoundedRect(QRectF(x, 19, 8.5, 10), 1.5, 1.5);
    }
    painter.drawRoundedRect(QRectF(41, 19, 8, 13), 1.5, 1.5);
    painter.drawRect(QRectF(3, 35, 41, 2));
    painter.drawRect(QRectF(3, 40, 59, 2));

    for (const int x : {16, 48}) {
        painter.setBrush(QColor("#1b1f27"));
        painter.drawEllipse(QPointF(x, 49), 8, 8);
        painter.setBrush(QColor("#c9d0da"));
        painter.drawEllipse(QPointF(x, 49), 3.2, 3.2);
    }
    return pixmap;
}

}  // namespace

QIcon programIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addPixmap(busPixmap(size));
    }
    return icon;
}

}  // namespace forms
