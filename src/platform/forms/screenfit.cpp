#include "platform/forms/screenfit.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace forms {

namespace {

QMargins frameOf(const QWidget& window) {
    const QRect inner = window.geometry();
    const QRect outer = window.frameGeometry();
    if (outer != inner) {
        return {inner.left() - outer.left(), inner.top() - outer.top(),
                outer.right() - inner.right(), outer.bottom() - inner.bottom()};
    }
    const int edge = window.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const int title = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    return {edge, std::max(title, window.fontMetrics().height() * 2), edge, edge};
}

}  // namespace

QRect roomOnScreen(const QWidget& window) {
    return window.screen()->availableGeometry().marginsRemoved(frameOf(window));
}

void fitToScreen(QWidget& window) {
    const QRect room = roomOnScreen(window);
    QRect place = window.geometry();
    place.setSize(place.size().boundedTo(room.size()));
    place.moveLeft(std::clamp(place.left(), room.left(), room.right() - place.width() + 1));
    place.moveTop(std::clamp(place.top(), room.top(), room.bottom() - place.height() + 1));
    if (place != window.geometry()) {
        window.setGeometry(place);
    }
}

}  // namespace forms
