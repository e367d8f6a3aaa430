#include "map/small/smallmap.h"

#include <QEvent>
#include <QFontMetrics>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "map/small/formtheme.h"
#include "platform/controls/access.h"

namespace map {

constexpr double Margin = 24;  ///< pixels around the scene
constexpr double ScaleHeight = 28;
constexpr double Corner = 4;

SmallMap::SmallMap(QWidget* parent)
    : QWidget(parent), picture_([this] {
          QMetaObject::invokeMethod(
              this, [this] { update(); }, Qt::QueuedConnection);
      }) {
    controls::makeAccessible<SmallMap, controls::PictureAccess>();
    setAccessibleName(tr("Map of the run"));
    setMouseTracking(true);
    takeTheme();
    say({});
}

void SmallMap::showScene(std::shared_ptr<const Ground> ground, Scene scene, const QString& told) {
    if (isEmpty(extentOf(scene))) {
        say(tr("None of the stops has a place on the map yet."));
        return;
    }
    words_.clear();
    setAccessibleDescription(told);
    picture_.setGround(std::move(ground));
    picture_.setScene(std::move(scene));
    update();
}

void SmallMap::say(const QString& words) {
    words_ = words;
    setAccessibleDescription(words);
    picture_.setScene({});
    update();
}

void SmallMap::choose(std::optional<std::size_t> stop) {
    Scene scene = picture_.scene();
    if (scene.runs.empty()) {
        return;
    }
    auto& stops = scene.runs.front().stops;
    bool isOther = false;
    for (std::size_t i = 0; i < stops.size(); ++i) {
        isOther = isOther || stops[i].isChosen != (stop == i);
        stops[i].isChosen = stop == i;
    }
    if (isOther) {
        picture_.setScene(std::move(scene));
        update();
    }
}

QSize SmallMap::sizeHint() const {
    const int line = fontMetrics().height();
    return {line * 22, line * 14};
}

QSize SmallMap::minimumSizeHint() const { return sizeHint() / 3; }

Camera SmallMap::camera() const {
    // The scale keeps the lower edge for itself.
    const QSizeF above(width(), std::max(height() - ScaleHeight, 1.0));
    return Camera::showing(extentOf(picture_.scene()), above, Margin)
        .resized(size())
        .movedBy({0, -ScaleHeight / 2});
}

bool SmallMap::isSettled() const {
    return isEmpty(extentOf(picture_.scene())) || picture_.isSettled(camera(), devicePixelRatioF());
}

std::optional<int> SmallMap::stopAt(QPointF pixel) const {
    static const QMetaMethod clicked = QMetaMethod::fromSignal(&SmallMap::stopClicked);
    const auto hit = isSignalConnected(clicked) ? picture_.hitTest(camera(), pixel) : std::nullopt;
    const bool isStop = hit && hit->kind == Hit::Kind::Stop && hit->run == 0;
    return isStop ? std::optional(static_cast<int>(hit->index)) : std::nullopt;
}

void SmallMap::takeTheme() { picture_.setTheme(themeOf(palette())); }

void SmallMap::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        takeTheme();
    }
    QWidget::changeEvent(event);
}

void SmallMap::mousePressEvent(QMouseEvent* event) {
    const auto stop = stopAt(event->position());
    if (stop && event->button() == Qt::LeftButton) {
        emit stopClicked(*stop);
    }
}

void SmallMap::mouseMoveEvent(QMouseEvent* event) {
    setCursor(stopAt(event->position()) ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void SmallMap::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        emit mapWanted();
    }
}

void SmallMap::paintWords(QPainter& painter) const {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const int around = fontMetrics().height();
    painter.drawText(rect().adjusted(around, around, -around, -around),
                     Qt::AlignCenter | Qt::TextWordWrap, words_);
}

void SmallMap::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath frame;
    frame.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Corner, Corner);
    if (isEmpty(extentOf(picture_.scene()))) {
        painter.fillPath(frame, palette().color(QPalette::Base));
        paintWords(painter);
    } else {
        painter.save();
        painter.setClipPath(frame);
        picture_.paint(painter, camera(), devicePixelRatioF());
        painter.restore();
    }
    painter.strokePath(frame, QPen(palette().color(QPalette::Mid)));
}

}  // namespace map
