#include "platform/controls/refused.h"

#include <QPainter>
#include <QVariant>
#include <QWidget>

#include "platform/controls/refusalnote.h"

namespace controls {

constexpr auto Refused = "refused";

void showRefused(QWidget& control, bool refused, const QString& sentence) {
    delete RefusalNote::of(control);
    control.setProperty(Refused, refused);
    QPalette palette;
    if (refused) {
        palette.setColor(QPalette::Base, QColor(255, 0, 0));
        palette.setColor(QPalette::Button, QColor(255, 0, 0));
        for (const auto ink : {QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText}) {
            palette.setColor(ink, Qt::black);
        }
    }
    control.setPalette(palette);
    if (refused && !sentence.isEmpty()) {
        new RefusalNote(control, sentence);
    }
}

bool isRefused(const QWidget& control) { return control.property(Refused).toBool(); }

void drawWarning(QPainter& painter, const QRect& square, const QColor& ink) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / 16.0, square.height() / 16.0);
    painter.setPen(QPen(ink, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolygon(QPolygonF{{8, 2}, {14.5, 14}, {1.5, 14}});
    painter.drawLine(QPointF(8, 6.5), QPointF(8, 9.7));
    painter.drawPoint(QPointF(8, 11.9));
    painter.restore();
}

}  // namespace controls
