#include "platform/controls/signs.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <vector>

#include "platform/base/lookup.h"

namespace controls {

namespace {

using Strokes = std::vector<QPolygonF>;

/// Strokes on a square of 16 units, turned by so many degrees.
struct Drawing {
    Strokes strokes;
    int turn = 0;
    qreal width = 1.8;
};

const Strokes Arrow{{{8, 14}, {8, 3}}, {{4, 7}, {8, 3}, {12, 7}}};
const Strokes ArrowToBar{
    {{8, 14}, {8, 5.5}}, {{4, 9.5}, {8, 5.5}, {12, 9.5}}, {{3.5, 2}, {12.5, 2}}};
const Strokes Sheet{{{2, 3}, {14, 3}, {14, 14}, {2, 14}, {2, 3}},
                    {{2, 6.5}, {14, 6.5}},
                    {{5.5, 1.5}, {5.5, 4.5}},
                    {{10.5, 1.5}, {10.5, 4.5}},
                    {{5, 9.2}, {11.5, 9.2}},
                    {{5, 11.7}, {11.5, 11.7}}};

const Strokes Triangle{
    {{8, 2}, {14.5, 13.8}, {1.5, 13.8}, {8, 2}}, {{8, 6.6}, {8, 9.6}}, {{8, 11.7}, {8, 11.8}}};
const Strokes NotEqual{{{3, 6}, {13, 6}}, {{3, 10.5}, {13, 10.5}}, {{11, 3}, {5, 13.5}}};
const Strokes Check{{{2.5, 8.5}, {6.3, 12.3}, {13.5, 4.2}}};

/// A circle with a stroke through it.
Strokes crossedCircle() {
    constexpr int Corners = 24;
    constexpr qreal Radius = 5.5;
    QPolygonF circle;
    for (int corner = 0; corner <= Corners; ++corner) {
        const qreal angle = 2 * M_PI * corner / Corners;
        circle << QPointF(8 + Radius * std::cos(angle), 8 + Radius * std::sin(angle));
    }
    return {circle, {{4.5, 4.5}, {11.5, 11.5}}};
}

/// Two columns of dots, by which something is taken hold of.
Strokes dots() {
    Strokes strokes;
    for (const qreal x : {6.0, 10.0}) {
        for (const qreal y : {3.5, 8.0, 12.5}) {
            strokes.push_back({{x, y}, {x + 0.01, y}});
        }
    }
    return strokes;
}

const Drawing& drawingOf(Sign sign) {
    static const std::map<Sign, Drawing> Drawings{{Sign::Up, {Arrow}},
                                                  {Sign::Right, {Arrow, 90}},
                                                  {Sign::Down, {Arrow, 180}},
                                                  {Sign::Left, {Arrow, 270}},
                                                  {Sign::ToTop, {ArrowToBar}},
                                                  {Sign::ToBottom, {ArrowToBar, 180}},
                                                  {Sign::NoPlace, {crossedCircle()}},
                                                  {Sign::Grip, {dots()}},
                                                  {Sign::Warning, {Triangle}},
                                                  {Sign::Unlike, {NotEqual}},
                                                  {Sign::Tick, {Check}},
                                                  {Sign::Calendar, {Sheet, 0, 1.2}}};
    return Drawings.at(sign);
}

/// A rounded area of the bus, on a square of 64 units.
struct Area {
    QRectF rect;
    qreal radius;
    const char* colour;
};

constexpr auto Yellow = "#f2b01e";
constexpr auto Blue = "#22304a";
constexpr auto Tyre = "#1b1f27";
constexpr auto Hub = "#c9d0da";
const std::vector<Area> Bus{{{3, 14, 49, 34}, 5, Yellow},   {{44, 29, 18, 19}, 4, Yellow},
                            {{8, 19, 8.5, 10}, 1.5, Blue},  {{19, 19, 8.5, 10}, 1.5, Blue},
                            {{30, 19, 8.5, 10}, 1.5, Blue}, {{41, 19, 8, 13}, 1.5, Blue},
                            {{3, 35, 41, 2}, 0, Blue},      {{3, 40, 59, 2}, 0, Blue},
                            {{8, 41, 16, 16}, 8, Tyre},     {{12.8, 45.8, 6.4, 6.4}, 3.2, Hub},
                            {{40, 41, 16, 16}, 8, Tyre},    {{44.8, 45.8, 6.4, 6.4}, 3.2, Hub}};

/// A square pixmap of so many pixels, painted in units of its own.
QPixmap painted(int pixels, int units, const std::function<void(QPainter&)>& paint) {
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(1.0 * pixels / units, 1.0 * pixels / units);
    paint(painter);
    return pixmap;
}

constexpr int Units = 16;

void draw(QPainter& painter, const Drawing& drawing, const QColor& colour) {
    painter.setPen(QPen(colour, drawing.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(Units / 2.0, Units / 2.0);
    painter.rotate(drawing.turn);
    painter.translate(-Units / 2.0, -Units / 2.0);
    for (const QPolygonF& stroke : drawing.strokes) {
        painter.drawPolyline(stroke);
    }
}

QPixmap drawn(const Drawing& drawing, const QColor& colour, int size = Units) {
    constexpr int PixelRatio = 3;  // sharp on any screen
    auto pixmap = painted(size * PixelRatio, Units,
                          [&](QPainter& painter) { draw(painter, drawing, colour); });
    pixmap.setDevicePixelRatio(PixelRatio);
    return pixmap;
}

/// Paints its sign anew each time, so that it has the colours and the sharpness of the moment.
class SignEngine : public QIconEngine {
public:
    SignEngine(Sign sign, QPalette::ColorRole ink) : sign_(sign), ink_(ink) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        paintSign(*painter, rect, sign_, QGuiApplication::palette().color(group, ink_));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new SignEngine(*this); }

private:
    Sign sign_;
    QPalette::ColorRole ink_;
};

}  // namespace

void paintSign(QPainter& painter, const QRect& rect, Sign sign, const QColor& ink) {
    const int side = std::min(rect.width(), rect.height());
    QRect square(0, 0, side, side);
    square.moveCenter(rect.center());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(1.0 * side / Units, 1.0 * side / Units);
    draw(painter, drawingOf(sign), ink);
    painter.restore();
}

QIcon signIcon(Sign sign, QPalette::ColorRole ink) { return QIcon(new SignEngine(sign, ink)); }

QPixmap markFor(Sign sign, const QColor& ink, int lineHeight) {
    constexpr double OfLine = 0.8;  // the drawing leaves room around itself
    return drawn(drawingOf(sign), ink, static_cast<int>(std::lround(OfLine * lineHeight)));
}

QString wordFor(Sign sign) {
    static const std::pair<Sign, QString> Words[] = {
        {Sign::Warning, QStringLiteral("warning")},
        {Sign::NoPlace, QStringLiteral("no place on the map")},
        {Sign::Unlike, QStringLiteral("not the same")},
        {Sign::Tick, QStringLiteral("fine")}};
    return base::lookUp(Words, sign, {});
}

QIcon programIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addPixmap(painted(size, 64, [](QPainter& painter) {
            painter.setPen(Qt::NoPen);
            for (const Area& area : Bus) {
                painter.setBrush(QColor(area.colour));
                painter.drawRoundedRect(area.rect, area.radius, area.radius);
            }
        }));
    }
    return icon;
}

}  // namespace controls
