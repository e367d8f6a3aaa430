#include "stops/sequence/arrowicon.h"

#include <QPainter>
#include <QPainterPath>

namespace stops {

namespace {

constexpr int IconSize = 16;
constexpr int PixelRatio = 3;  // sharp on any screen

/// How far an arrow that points up is turned, in degrees.
int turnOf(Arrow arrow) {
    switch (arrow) {
        case Arrow::Right:
            return 90;
        case Arrow::Down:
        case Arrow::ToBottom:
            return 180;
        case Arrow::Left:
            return 270;
        default:
            return 0;
    }
}

QPixmap drawn(Arrow arrow, const QColor& colour) {
    QPixmap pixmap(IconSize * PixelRatio, IconSize * PixelRatio);
    pixmap.setDevicePixelRatio(PixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(IconSize / 2.0, IconSize / 2.0);
    painter.rotate(turnOf(arrow));
    const bool bar = arrow == Arrow::ToTop || arrow == Arrow::ToBottom;
    const double tip = bar ? -2.5 : -5;
    painter.drawLine(QPointF(0, 6), QPointF(0, tip));
    painter.drawPolyline(QPolygonF{{-4, tip + 4}, {0, tip}, {4, tip + 4}});
    if (bar) {
        painter.drawLine(QPointF(-4.5, -6), QPointF(4.5, -6));
    }
    return pixmap;
}

}  // namespace

QIcon arrowIcon(Arrow arrow, const QPalette& palette) {
    QIcon icon(drawn(arrow, palette.color(QPalette::Active, QPalette::ButtonText)));
    icon.addPixmap(drawn(arrow, palette.color(QPalette::Disabled, QPalette::ButtonText)),
                   QIcon::Disabled);
    return icon;
}

}  // namespace stops
