#include "reports/preview/pagepainter.h"

#include <QGlyphRun>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <optional>

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

QPainterPath pathOf(const Picture::Path& path) {
    QPainterPath traced;
    const float* at = path.places.data();
    for (const Picture::Step step : path.steps) {
        switch (step) {
            case Picture::Step::Move:
                traced.moveTo(at[0], at[1]);
                at += 2;
                break;
            case Picture::Step::Line:
                traced.lineTo(at[0], at[1]);
                at += 2;
                break;
            case Picture::Step::Curve:
                traced.cubicTo(at[0], at[1], at[2], at[3], at[4], at[5]);
                at += 6;
                break;
            case Picture::Step::Close:
                traced.closeSubpath();
                break;
        }
    }
    traced.setFillRule(path.look.evenOdd ? Qt::OddEvenFill : Qt::WindingFill);
    return traced;
}

QPen penOf(const Picture::Look& look, const QColor& ink) {
    QPen pen(ink, look.thick, Qt::SolidLine, look.roundEnds ? Qt::RoundCap : Qt::FlatCap,
             Qt::RoundJoin);
    if (look.dash > 0 && look.thick > 0) {
        pen.setDashPattern({look.dash / look.thick, look.gap / look.thick});
    }
    return pen;
}

void paintPaths(QImage& image, const Picture& picture, double scale) {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    for (const Picture::Path& path : picture.paths) {
        const auto& [red, green, blue, alpha] = path.look.colour;
        const QColor ink(red, green, blue, alpha);
        if (path.look.filled) {
            painter.fillPath(pathOf(path), ink);
        } else {
            painter.strokePath(pathOf(path), penOf(path.look, ink));
        }
    }
}

}  // namespace

void PagePainter::paint(QPainter& painter, const Page& page, double scale) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Shape& shape : page.shapes) {
        paintShape(painter, shape, scale);
    }
    for (const PlacedPicture& placed : page.pictures) {
        paintPicture(painter, placed, scale);
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

/// Thousands of lines: while a page is moved about they are painted once.
void PagePainter::paintPicture(QPainter& painter, const PlacedPicture& placed, double scale) {
    constexpr std::size_t MostKept = 6;
    const double ratio = painter.device()->devicePixelRatioF();
    const QSize pixels =
        (QSizeF(placed.width, placed.height) * scale * ratio).expandedTo({1, 1}).toSize();
    auto known = std::ranges::find_if(pictures_, [&](const Painted& painted) {
        return painted.drawable == placed.drawable && painted.image.size() == pixels;
    });
    if (known == pictures_.end()) {
        QImage image(pixels, QImage::Format_RGB32);
        image.fill(Qt::white);
        image.setDevicePixelRatio(ratio);
        paintPaths(image, placed.drawn(), scale);
        pictures_.push_front({placed.drawable, std::move(image)});
        pictures_.resize(std::min(pictures_.size(), MostKept));
        known = pictures_.begin();
    }
    painter.drawImage(QPointF(placed.x, placed.y) * scale, known->image);
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
