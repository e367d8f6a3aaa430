#include "map/drawing/symbols.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include "map/drawing/lettering.h"
#include "map/drawing/scenelayout.h"

namespace map {

namespace {

constexpr double Outline = 2;

QString hex(const QColor& colour) { return colour.name(QColor::HexArgb); }

/// Letters as a filled path, which paper and screen show alike.
void letters(QPainter& painter, const QString& text, const NameStyle& style, const QColor& ink) {
    QFont font = fontOf(style);
    font.setStretch(QFont::AnyStretch);
    const QFontMetricsF metrics(font);
    QPainterPath path;
    path.addText(QPointF(-metrics.horizontalAdvance(text) / 2, metrics.capHeight() / 2), font,
                 text);
    painter.fillPath(path, ink);
}

/// A square with round corners, as the ground of a sign.
void tile(QPainter& painter, const QColor& colour, const Theme& theme) {
    constexpr double Half = PlaceSide / 2, Corner = 4;
    const QRectF box(-Half, -Half, PlaceSide, PlaceSide);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.wayCasing);
    painter.drawRoundedRect(box.adjusted(-Outline, -Outline, Outline, Outline), Corner + Outline,
                            Corner + Outline);
    painter.setBrush(colour);
    painter.drawRoundedRect(box, Corner, Corner);
}

constexpr QSizeF TileSize{PlaceSide + 2 * Outline, PlaceSide + 2 * Outline};

}  // namespace

void paintDisc(QPainter& painter, Stamps& stamps, QPointF centre, const QString& number,
               const DiscLook& look) {
    constexpr double RingGap = 3, RingThick = 2, Whole = DiscRadius + RingGap + RingThick + 1;
    const QString key = QStringLiteral("disc %1 %2 %3 %4 %5")
                            .arg(hex(look.fill), hex(look.ink), hex(look.casing), number)
                            .arg(look.isChosen ? 1 : 0);
    stamps.stamp(painter, key, QSizeF(2 * Whole, 2 * Whole), centre, 0, [&](QPainter& on) {
        on.setPen(Qt::NoPen);
        if (look.isChosen) {
            on.setBrush(look.fill);
            on.drawEllipse(QPointF(), DiscRadius + RingGap + RingThick,
                           DiscRadius + RingGap + RingThick);
        }
        on.setBrush(look.casing);
        const double white = DiscRadius + (look.isChosen ? RingGap : Outline);
        on.drawEllipse(QPointF(), white, white);
        on.setBrush(look.fill);
        on.drawEllipse(QPointF(), DiscRadius, DiscRadius);
        letters(on, number, {number.size() > 2 ? 9 : 11, true}, look.ink);
    });
}

void paintRing(QPainter& painter, Stamps& stamps, QPointF centre, const DiscLook& look) {
    const double radius = RingRadius + (look.isChosen ? 1.5 : 0);
    const QString key = QStringLiteral("ring %1 %2 %3")
                            .arg(hex(look.fill), hex(look.casing))
                            .arg(look.isChosen ? 1 : 0);
    stamps.stamp(painter, key, QSizeF(2 * radius + 4, 2 * radius + 4), centre, 0,
                 [&](QPainter& on) {
                     on.setPen(QPen(look.fill, look.isChosen ? 3 : 1.8));
                     on.setBrush(look.casing);
                     on.drawEllipse(QPointF(), radius, radius);
                 });
}

void paintWarning(QPainter& painter, Stamps& stamps, QPointF centre, const Theme& theme) {
    const QString key = QStringLiteral("warning %1").arg(hex(theme.warning));
    stamps.stamp(painter, key, QSizeF(20, 20), centre, 0, [&](QPainter& on) {
        const QPolygonF triangle({QPointF(0, -6.5), QPointF(7, 5.5), QPointF(-7, 5.5)});
        on.setPen(QPen(theme.wayCasing, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        on.setBrush(theme.wayCasing);
        on.drawPolygon(triangle);
        on.setPen(QPen(theme.warning, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        on.setBrush(theme.warning);
        on.drawPolygon(triangle);
        on.setPen(QPen(theme.onWarning, 1.6, Qt::SolidLine, Qt::RoundCap));
        on.drawLine(QPointF(0, -2.8), QPointF(0, 1));
        on.drawPoint(QPointF(0, 3.6));
    });
}

void paintSchool(QPainter& painter, Stamps& stamps, QPointF centre, const Theme& theme) {
    const QString key = QStringLiteral("school %1").arg(hex(theme.school));
    stamps.stamp(painter, key, TileSize, centre, 0, [&](QPainter& on) {
        tile(on, theme.school, theme);
        on.setBrush(theme.onPlace);
        on.drawPolygon(QPolygonF({QPointF(-5.5, -1.5), QPointF(0, -6), QPointF(5.5, -1.5)}));
        on.drawRect(QRectF(-5, -1, 10, 9));
        on.drawRect(QRectF(-9, 2, 18, 6));
        on.drawRect(QRectF(-0.6, -10.5, 1.2, 5));
        on.drawPolygon(QPolygonF({QPointF(0.4, -10.5), QPointF(5, -9), QPointF(0.4, -7.4)}));
        on.setBrush(theme.school);
        on.drawRect(QRectF(-1.6, 3.6, 3.2, 4.4));
        on.drawRect(QRectF(-6.8, 4, 2.4, 2));
        on.drawRect(QRectF(4.4, 4, 2.4, 2));
        on.drawEllipse(QPointF(0, 0.6), 1.5, 1.5);
    });
}

void paintGarage(QPainter& painter, Stamps& stamps, QPointF centre, const Theme& theme) {
    const QString key = QStringLiteral("garage %1").arg(hex(theme.garage));
    stamps.stamp(painter, key, TileSize, centre, 0, [&](QPainter& on) {
        tile(on, theme.garage, theme);
        on.setBrush(theme.onPlace);
        on.drawRoundedRect(QRectF(-8, -5.5, 16, 10), 2, 2);
        on.drawEllipse(QPointF(-4.4, 4.8), 2.2, 2.2);
        on.drawEllipse(QPointF(4.4, 4.8), 2.2, 2.2);
        on.setBrush(theme.garage);
        for (const double left : {-6.4, -1.8, 2.8}) {
            on.drawRect(QRectF(left, -3.6, 3.6, 3.4));
        }
        on.drawEllipse(QPointF(-4.4, 4.8), 0.9, 0.9);
        on.drawEllipse(QPointF(4.4, 4.8), 0.9, 0.9);
    });
}

void paintHome(QPainter& painter, Stamps& stamps, QPointF centre, const QColor& colour,
               const Theme& theme) {
    const QString key = QStringLiteral("home %1").arg(hex(colour));
    stamps.stamp(painter, key, QSizeF(22, 22), centre, 0, [&](QPainter& on) {
        const QPolygonF house({QPointF(0, -7), QPointF(6.5, -1.5), QPointF(6.5, 6.5),
                               QPointF(-6.5, 6.5), QPointF(-6.5, -1.5)});
        on.setPen(QPen(theme.wayCasing, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        on.setBrush(colour);
        on.drawPolygon(house);
        on.setPen(Qt::NoPen);
        on.drawPolygon(house);
    });
}

void paintBus(QPainter& painter, QPointF front, double degrees, double feetPerPixel,
              const Theme& theme) {
    constexpr double LengthFeet = 40, WidthFeet = 8.5;
    const double length = LengthFeet / feetPerPixel, width = WidthFeet / feetPerPixel;
    painter.save();
    painter.translate(front);
    painter.rotate(degrees);
    painter.setPen(QPen(theme.wayCasing, 1.5));
    painter.setBrush(theme.bus);
    painter.drawRoundedRect(QRectF(-width / 2, 0, width, length), width / 5, width / 5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x33, 0x33, 0x33));
    painter.drawRect(QRectF(-width * 0.4, width * 0.15, width * 0.8, width * 0.25));
    painter.restore();
}

void paintPlate(QPainter& painter, Stamps& stamps, const QRectF& box, const QString& text,
                const PlateLook& look) {
    const QString key = QStringLiteral("plate %1 %2 %3 %4 %5 %6x%7")
                            .arg(hex(look.ground), hex(look.ink), hex(look.frame), text)
                            .arg(look.corner)
                            .arg(box.width())
                            .arg(box.height());
    stamps.stamp(painter, key, box.size(), box.center(), 0, [&](QPainter& on) {
        on.setPen(QPen(look.frame, 1.2));
        on.setBrush(look.ground);
        on.drawRoundedRect(QRectF(-box.width() / 2, -box.height() / 2, box.width(), box.height()),
                           look.corner, look.corner);
        letters(on, text, {look.pixels, true}, look.ink);
    });
}

}  // namespace map
