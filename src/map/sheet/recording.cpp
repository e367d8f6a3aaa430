#include "map/sheet/recording.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "map/ground/polyline.h"

namespace map {

namespace {

using Drawing = reports::Picture;

reports::Colour colourOf(const QColor& colour, double opacity) {
    const auto part = [](int value) { return static_cast<std::uint8_t>(value); };
    return {part(colour.red()), part(colour.green()), part(colour.blue()),
            part(static_cast<int>(std::lround(colour.alpha() * opacity)))};
}

void add(Drawing::Path& path, Drawing::Step step, std::initializer_list<QPointF> places) {
    path.steps.push_back(step);
    for (const QPointF place : places) {
        path.places.push_back(static_cast<float>(place.x()));
        path.places.push_back(static_cast<float>(place.y()));
    }
}

void trace(Drawing::Path& path, const QPainterPath& traced) {
    for (int i = 0; i < traced.elementCount(); ++i) {
        const auto element = traced.elementAt(i);
        if (element.isMoveTo()) {
            add(path, Drawing::Step::Move, {element});
        } else if (element.isLineTo()) {
            add(path, Drawing::Step::Line, {element});
        } else if (element.isCurveTo()) {
            add(path, Drawing::Step::Curve,
                {element, traced.elementAt(i + 1), traced.elementAt(i + 2)});
            i += 2;
        }
    }
}

class Engine : public QPaintEngine {
public:
    explicit Engine(Drawing& picture)
        : QPaintEngine(AllFeatures),
          picture_(picture),
          frame_(0, 0, static_cast<double>(picture.width), static_cast<double>(picture.height)) {}

    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    [[nodiscard]] Type type() const override { return User; }
    void updateState(const QPaintEngineState& /*state*/) override {}
    void drawPixmap(const QRectF& /*to*/, const QPixmap& /*pixmap*/,
                    const QRectF& /*from*/) override {}
    void drawPath(const QPainterPath& path) override;
    using QPaintEngine::drawPolygon;
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override;

private:
    void fill(const QPainterPath& path);
    void stroke(const QPainterPath& path);
    void strokeLine(const QPolygonF& line);
    Drawing::Path& pathFor(const Drawing::Look& look);

    Drawing& picture_;
    QRectF frame_;
};

/// Lines of one look go on in one path, as the streets of a class do; where they cross they would
/// else be darker, so that only what covers is joined.
Drawing::Path& Engine::pathFor(const Drawing::Look& look) {
    constexpr std::uint8_t Covers = 255;
    const bool goesOn = !picture_.paths.empty() && picture_.paths.back().look == look &&
                        !look.filled && look.colour.alpha == Covers;
    return goesOn ? picture_.paths.back() : picture_.paths.emplace_back(Drawing::Path{look});
}

void Engine::fill(const QPainterPath& path) {
    const QBrush brush = state->brush();
    const auto colour = colourOf(brush.color(), state->opacity());
    if (brush.style() != Qt::NoBrush && colour.alpha > 0) {
        const bool evenOdd = path.fillRule() == Qt::OddEvenFill;
        trace(pathFor({.filled = true, .evenOdd = evenOdd, .colour = colour}), path);
    }
}

void Engine::stroke(const QPainterPath& path) {
    const QPen pen = state->pen();
    const auto colour = colourOf(pen.color(), state->opacity());
    if (pen.style() == Qt::NoPen || colour.alpha == 0) {
        return;
    }
    const double scale = std::sqrt(std::abs(state->transform().determinant()));
    const double thick = std::max(pen.widthF(), 0.1) * scale;
    Drawing::Look look{.filled = false,
                       .colour = colour,
                       .thick = static_cast<float>(thick),
                       .roundEnds = pen.capStyle() != Qt::FlatCap};
    if (const auto dashes = pen.dashPattern(); dashes.size() > 1) {
        look.dash = static_cast<float>(dashes[0] * thick);
        look.gap = static_cast<float>(dashes[1] * thick);
    }
    trace(pathFor(look), path);
}

void Engine::drawPath(const QPainterPath& path) {
    const QPainterPath placed = state->transform().map(path);
    fill(placed);
    stroke(placed);
}

/// A street goes on through the whole city; only dashes would begin elsewhere.
void Engine::strokeLine(const QPolygonF& line) {
    constexpr double Around = 20;  // points: the widest street reaches in from there
    constexpr double Unseen = 0.2;
    QPainterPath path;
    if (state->pen().dashPattern().size() > 1) {
        path.addPolygon(line);
    } else {
        for (const LinePart& part :
             clipped(line, frame_.adjusted(-Around, -Around, Around, Around))) {
            const Line plain = simplified(part.points, Unseen);
            path.addPolygon(QPolygonF(QList<QPointF>(plain.begin(), plain.end())));
        }
    }
    stroke(path);
}

void Engine::drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) {
    const QPolygonF line(QList<QPointF>(points, points + count));
    if (mode == PolylineMode) {
        return strokeLine(state->transform().map(line));
    }
    QPainterPath path;
    path.addPolygon(line);
    const QPainterPath placed = state->transform().map(path);
    fill(placed);
    QPainterPath closed = placed;
    closed.closeSubpath();
    stroke(closed);
}

class Device : public QPaintDevice {
public:
    Device(QSizeF size, Drawing& picture) : size_(size.toSize()), engine_(picture) {}
    [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine_; }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override;

private:
    QSize size_;
    mutable Engine engine_;
};

int Device::metric(PaintDeviceMetric metric) const {
    constexpr int Dpi = 96;
    constexpr double MillimetresPerPoint = 25.4 / 72;
    switch (metric) {
        case PdmWidth:
            return size_.width();
        case PdmHeight:
            return size_.height();
        case PdmWidthMM:
            return static_cast<int>(size_.width() * MillimetresPerPoint);
        case PdmHeightMM:
            return static_cast<int>(size_.height() * MillimetresPerPoint);
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return Dpi;
        case PdmDevicePixelRatio:
            return 1;
        default:
            return QPaintDevice::metric(metric);
    }
}

}  // namespace

reports::Picture recorded(QSizeF size, const std::function<void(QPainter&)>& paint) {
    Drawing picture{.width = static_cast<float>(size.width()),
                    .height = static_cast<float>(size.height())};
    Device device(size, picture);
    QPainter painter(&device);
    paint(painter);
    painter.end();
    return picture;
}

}  // namespace map
