#include "map/window/mapview.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QGestureEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPinchGesture>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>
#include <cmath>
#include <utility>

#include "map/small/formtheme.h"
#include "platform/controls/tones.h"

namespace map {

namespace {

/// Four corners of a frame, in the ink of the buttons.
QIcon frameIcon(const QColor& ink, int side) {
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setPen(QPen(ink, 2));
    const int near = side / 8;
    const int far = side - near - 1;
    const int arm = side / 4;
    for (const int x : {near, far}) {
        for (const int y : {near, far}) {
            painter.drawLine(x, y, x + (x == near ? arm : -arm), y);
            painter.drawLine(x, y, x, y + (y == near ? arm : -arm));
        }
    }
    return picture;
}

constexpr double WheelStep = 1.25;
constexpr double KeyStep = 1.6;
constexpr double WheelNotch = 120;
constexpr double ArrowPart = 0.2;
constexpr int Beside = 12;  ///< pixels from the map's edges to its buttons

}  // namespace

MapView::MapView(QWidget* parent)
    : QWidget(parent), picture_([this] {
          QMetaObject::invokeMethod(this, qOverload<>(&QWidget::update), Qt::QueuedConnection);
      }) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    grabGesture(Qt::PinchGesture);
    makeButtons();
    applyTheme();
}

MapView::~MapView() = default;

void MapView::makeButtons() {
    const auto make = [this](const QString& sign, const char* name, const QString& word) {
        auto* button = new QToolButton(this);
        button->setObjectName(QLatin1String(name));
        button->setText(sign);
        button->setToolTip(word);
        button->setAccessibleName(word);
        button->setFocusPolicy(Qt::NoFocus);
        button->setCursor(Qt::ArrowCursor);
        return button;
    };
    zoomIn_ = make(QStringLiteral("+"), "ZoomIn", tr("Zoom in (+)"));
    zoomOut_ = make(QStringLiteral("−"), "ZoomOut", tr("Zoom out (-)"));
    fit_ = make(QString(), "ShowAll", tr("Show everything (Home)"));
    connect(zoomIn_, &QToolButton::clicked, this, [this] { zoom(KeyStep); });
    connect(zoomOut_, &QToolButton::clicked, this, [this] { zoom(1 / KeyStep); });
    connect(fit_, &QToolButton::clicked, this, &MapView::fit);
}

void MapView::placeButtons() {
    const int side = fontMetrics().height() * 2;
    int y = Beside;
    std::vector<QRectF> reserved;
    for (auto* button : {zoomIn_, zoomOut_, fit_}) {
        button->setGeometry(width() - side - Beside, y, side, side);
        reserved.emplace_back(button->geometry());
        y += side + (button == zoomOut_ ? Beside : 2);
    }
    picture_.setReserved(std::move(reserved));
}

void MapView::applyTheme() {
    picture_.setTheme(themeOf(palette()));
    fit_->setIcon(frameIcon(palette().color(QPalette::ButtonText), fontMetrics().height()));
    update();
}

void MapView::setGround(std::shared_ptr<const Ground> ground) {
    picture_.setGround(std::move(ground));
    update();
}

void MapView::showScene(Scene scene) {
    picture_.setScene(std::move(scene));
    update();
}

void MapView::showScene(Scene scene, const streets::Box& firstSight, Fit fitting) {
    firstSight_ = firstSight;
    picture_.setScene(std::move(scene));
    if (fitting == Fit::Yes) {
        fit();
    }
    update();
}

void MapView::fit() {
    showsAll_ = true;
    if (!isEmpty(firstSight_)) {
        moveCamera(Camera::showing(firstSight_, size()));
    }
}

void MapView::moveCamera(const Camera& camera) {
    camera_ = camera;
    update();
}

void MapView::setCamera(const Camera& camera) {
    showsAll_ = false;
    moveCamera(camera.resized(size()));
}

void MapView::zoom(double times) { setCamera(camera_.zoomedAbout(QRectF(rect()).center(), times)); }

void MapView::reveal(geo::Feet place, double feetPerPixel) {
    const auto at = camera_.toPixels(place);
    const bool isFar = camera_.feetPerPixel() > feetPerPixel;
    if (isFar ||
        !rect().marginsRemoved(QMargins(Beside, Beside, Beside, Beside)).contains(at.toPoint())) {
        setCamera(Camera(place, std::min(camera_.feetPerPixel(), feetPerPixel), size()));
    }
}

void MapView::setMovingStops(bool on) {
    movesStops_ = on;
    setCursor(on ? Qt::CrossCursor : Qt::ArrowCursor);
}

QString MapView::tellOf(const Hit& hit) const { return telling_ ? telling_(hit) : QString(); }

int MapView::stopCount() const {
    std::size_t count = 0;
    for (const auto& run : scene().runs) {
        count += run.stops.size();
    }
    return static_cast<int>(count);
}

Hit MapView::hitOfStop(int place) const {
    Hit hit{.index = static_cast<std::size_t>(place)};
    while (hit.index >= scene().runs[hit.run].stops.size()) {
        hit.index -= scene().runs[hit.run].stops.size();
        ++hit.run;
    }
    return hit;
}

QSize MapView::sizeHint() const { return fontMetrics().size(0, QStringLiteral("M")) * 40; }

void MapView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    picture_.paint(painter, camera_, devicePixelRatioF());
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(controls::focusInk(palette()), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void MapView::resizeEvent(QResizeEvent*) {
    placeButtons();
    camera_ = camera_.resized(size());
    if (showsAll_) {
        fit();
    }
}

void MapView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        applyTheme();
    } else if (event->type() == QEvent::FontChange) {
        placeButtons();
    }
}

bool MapView::event(QEvent* event) { return pinch(event) || QWidget::event(event); }

bool MapView::pinch(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() != Qt::ZoomNativeGesture) {
            return false;
        }
        setCamera(camera_.zoomedAbout(gesture->position(), 1 + gesture->value()));
        return true;
    }
    if (event->type() != QEvent::Gesture) {
        return false;
    }
    const auto* gesture = static_cast<QGestureEvent*>(event)->gesture(Qt::PinchGesture);
    if (gesture == nullptr) {
        return false;
    }
    const auto* fingers = static_cast<const QPinchGesture*>(gesture);
    const QPointF middle = mapFromGlobal(fingers->centerPoint());
    pressedAt_.reset();
    setCamera(camera_.zoomedAbout(middle, fingers->scaleFactor())
                  .movedBy(fingers->centerPoint() - fingers->lastCenterPoint()));
    return true;
}

void MapView::wheelEvent(QWheelEvent* event) {
    const double notches = event->angleDelta().y() / WheelNotch;
    if (notches != 0) {
        setCamera(camera_.zoomedAbout(event->position(), std::pow(WheelStep, notches)));
    }
    event->accept();
}

bool MapView::moveByKey(int key) {
    const double x = width() * ArrowPart;
    const double y = height() * ArrowPart;
    switch (key) {
        case Qt::Key_Left:
            setCamera(camera_.movedBy({x, 0}));
            return true;
        case Qt::Key_Right:
            setCamera(camera_.movedBy({-x, 0}));
            return true;
        case Qt::Key_Up:
            setCamera(camera_.movedBy({0, y}));
            return true;
        case Qt::Key_Down:
            setCamera(camera_.movedBy({0, -y}));
            return true;
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            zoom(KeyStep);
            return true;
        case Qt::Key_Minus:
            zoom(1 / KeyStep);
            return true;
        case Qt::Key_Home:
            fit();
            return true;
        default:
            return false;
    }
}

void MapView::keyPressEvent(QKeyEvent* event) {
    const auto keys = event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    if (keys == Qt::NoModifier && moveByKey(event->key())) {
        return;
    }
    if (event->key() == Qt::Key_Escape && dragged_) {
        cancelDrag();
    } else if (event->key() == Qt::Key_Escape) {
        emit escapePressed();
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        emit enterPressed();
    } else {
        QWidget::keyPressEvent(event);
    }
}

bool MapView::focusNextPrevChild(bool next) {
    return (stepping_ && stepping_(next)) || QWidget::focusNextPrevChild(next);
}

std::optional<Hit> MapView::hitAt(QPointF at) const { return picture_.hitTest(camera_, at); }

void MapView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    pressedAt_ = lastAt_ = event->position();
    panned_ = false;
    const auto hit = hitAt(event->position());
    if (hit && hit->kind == Hit::Kind::Stop) {
        emit hitChosen(*hit);
        if (movesStops_ || event->modifiers().testFlag(Qt::AltModifier)) {
            dragged_ = hit;
        }
    }
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    if (!pressedAt_) {
        hover(event->position());
        return;
    }
    const QPointF way = event->position() - *pressedAt_;
    if (!panned_ && way.manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    panned_ = true;
    if (dragged_) {
        emit stopDragged(*dragged_, camera_.toFeet(event->position()));
    } else {
        setCamera(camera_.movedBy(event->position() - lastAt_));
    }
    lastAt_ = event->position();
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pressedAt_) {
        return;
    }
    pressedAt_.reset();
    if (const auto stop = std::exchange(dragged_, std::nullopt)) {
        if (panned_) {
            emit stopDropped(*stop, camera_.toFeet(event->position()));
        }
        return;
    }
    const auto hit = panned_ ? std::nullopt : hitAt(event->position());
    if (hit && hit->kind != Hit::Kind::Stop) {
        emit hitChosen(*hit);
    }
}

void MapView::cancelDrag() {
    pressedAt_.reset();
    if (const auto stop = std::exchange(dragged_, std::nullopt)) {
        emit stopPutBack(*stop);
    }
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    if (const auto hit = hitAt(event->position())) {
        emit hitActivated(*hit);
    } else {
        setCamera(camera_.zoomedAbout(event->position(), KeyStep));
    }
}

void MapView::contextMenuEvent(QContextMenuEvent* event) {
    emit menuAsked(event->globalPos(), camera_.toFeet(event->pos()));
}

void MapView::hover(QPointF at) {
    const auto hit = hitAt(at);
    const QString text = hit ? tellOf(*hit) : QString();
    QToolTip::showText(mapToGlobal(at.toPoint()), text, this);
    if (!movesStops_) {
        setCursor(hit ? Qt::PointingHandCursor : Qt::ArrowCursor);
    }
}

void MapView::leaveEvent(QEvent*) { QToolTip::hideText(); }

}  // namespace map
