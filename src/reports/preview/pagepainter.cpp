#include "reports/preview/pagepainter.h"

#include <QGlyphRun>
#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <optional>
#include <utility>

#include "platform/controls/qtext.h"
#include "reports/page/fonts.h"

namespace reports {

namespace {

QColor inkOf(std::uint8_t grey) { return {grey, grey, grey}; }

QPen penOf(const Shape& shape, double scale) {
    QPen pen(inkOf(shape.ink), shape.thick * scale);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    if (shape.dash > 0) {
        const double inPens = shape.thick > 0 ? shape.dash / shape.thick : shape.dash;
        pen.setDashPattern({inPens, inPens});
    }
    return pen;
}

QPolygonF polygonOf(const Shape& shape, double scale) {
    QPolygonF polygon;
    for (std::size_t i = 0; i + 1 < shape.points.size(); i += 2) {
        polygon << QPointF(shape.points[i], shape.points[i + 1]) * scale;
    }
    return polygon;
}

}  // namespace

void PagePainter::paint(QPainter& painter, const Page& page, double scale) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Shape& shape : page.shapes) {
        paintShape(painter, shape, scale);
    }
    const QRectF seen = painter.clipBoundingRect();
    for (const Box& box : page.boxes) {
        const bool isSeen = (box.baseline + box.size) * scale >= seen.top() &&
                            (box.baseline - 2 * box.size) * scale <= seen.bottom();
        if (isSeen || !painter.hasClipping()) {
            paintBox(painter, page, box, scale);
        }
    }
    painter.restore();
}

void PagePainter::paintShape(QPainter& painter, const Shape& shape, double scale) const {
    painter.setPen(shape.filled && shape.kind != Shape::Kind::Line ? QPen(Qt::NoPen)
                                                                   : penOf(shape, scale));
    painter.setBrush(shape.filled ? QBrush(inkOf(shape.ink)) : QBrush(Qt::NoBrush));
    const QPointF at(shape.x * scale, shape.y * scale);
    const QPointF extent(shape.width * scale, shape.height * scale);
    switch (shape.kind) {
        case Shape::Kind::Rectangle:
            return painter.drawRoundedRect(QRectF(at, at + extent), shape.corner * scale,
                                           shape.corner * scale);
        case Shape::Kind::Line:
            return painter.drawLine(at, at + extent);
        case Shape::Kind::Disc:
            return painter.drawEllipse(at, extent.x() / 2, extent.x() / 2);
        case Shape::Kind::Polygon:
            return shape.filled ? painter.drawPolygon(polygonOf(shape, scale))
                                : painter.drawPolyline(polygonOf(shape, scale));
    }
}

void PagePainter::paintBox(QPainter& painter, const Page& page, const Box& box, double scale) {
    const auto shaped = Fonts::instance().shape(box.face, page.textOf(box), box.rightToLeft);
    painter.setPen(inkOf(box.ink));
    const double em = box.size * scale;
    double spaced = 0;
    std::optional<std::uint32_t> letter;
    const auto isNext = [&](const Glyph& glyph) {
        const bool isFirst = !letter;
        return std::exchange(letter, glyph.cluster) != glyph.cluster && !isFirst;
    };
    for (const GlyphRun& run : shaped.runs) {
        QList<quint32> ids;
        QList<QPointF> places;
        for (const Glyph& glyph : run.glyphs) {
            ids << glyph.id;
            spaced += isNext(glyph) ? box.spacing * scale : 0;
            places << QPointF(glyph.x * em + spaced, glyph.y * em);
        }
        QGlyphRun glyphs;
        glyphs.setRawFont(fontOf(*run.file, em));
        glyphs.setGlyphIndexes(ids);
        glyphs.setPositions(places);
        painter.drawGlyphRun(QPointF(box.x * scale, box.baseline * scale), glyphs);
    }
}

const QRawFont& PagePainter::fontOf(const FontFile& file, double pixels) {
    constexpr double Steps = 64;
    constexpr std::size_t MostSizes = 200;  // zooming makes new ones
    if (fonts_.size() > MostSizes) {
        fonts_.clear();
    }
    const std::pair key(&file, static_cast<int>(std::lround(pixels * Steps)));
    auto known = fonts_.find(key);
    if (known == fonts_.end()) {
        known = fonts_
                    .emplace(key, QRawFont(controls::toQt(file.path), key.second / Steps,
                                           QFont::PreferNoHinting))
                    .first;
    }
    return known->second;
}

}  // namespace reports
