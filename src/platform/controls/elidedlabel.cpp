#include "platform/controls/elidedlabel.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

namespace controls {

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth(), QLabel::minimumSizeHint().height()};
}

QRect ElidedLabel::line() const {
    return contentsRect().adjusted(margin() + std::max(indent(), 0), margin(), -margin(),
                                   -margin());
}

bool ElidedLabel::isCut() const { return fontMetrics().horizontalAdvance(text()) > line().width(); }

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        setToolTip(isCut() ? text() : QString());
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(line(), static_cast<int>(alignment()),
                     fontMetrics().elidedText(text(), Qt::ElideRight, line().width()));
}

}  // namespace controls
