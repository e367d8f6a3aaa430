#include "map/drawing/groundpainter.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "map/ground/polyline.h"
#include "map/ground/zoomrules.h"

namespace map {

namespace {

using streets::GroundKind;
using streets::StreetClass;

constexpr double ThinPixels = 1.2;
constexpr double CasedFrom = 1.9;  ///< pixels; a narrower street is one line in its casing's colour

/// Without points that are too near to the one before them.
QPolygonF thinned(std::span<const geo::Feet> places, const Camera& camera) {
    QPolygonF line;
    line.reserve(static_cast<qsizetype>(places.size()));
    for (std::size_t i = 0; i < places.size(); ++i) {
        const QPointF at = camera.toPixels(places[i]);
        const bool isEnd = i == 0 || i + 1 == places.size();
        if (isEnd || (at - line.back()).manhattanLength() >= ThinPixels) {
            line << at;
        }
    }
    return line;
}

/// Round ends cost a lot and are seen on broad streets only.
QPen penOf(const QColor& colour, double width) {
    constexpr double Broad = 5.5;
    const bool isRound = width >= Broad;
    return {colour, width, Qt::SolidLine, isRound ? Qt::RoundCap : Qt::SquareCap,
            isRound ? Qt::RoundJoin : Qt::BevelJoin};
}

class GroundPainter {
public:
    GroundPainter(QPainter& painter, const GroundPart& ground, const Camera& camera,
                  const Theme& theme, const KeepGoing& keepGoing)
        : painter_(painter),
          ground_(ground),
          camera_(camera),
          theme_(theme),
          keepGoing_(keepGoing) {}

    bool paint() {
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.fillRect(QRectF({}, camera_.size()), theme_.ground);
        return areas() && streets() && signs();
    }

private:
    [[nodiscard]] bool goesOn() const { return !keepGoing_ || keepGoing_(); }

    bool areas();
    void area(const Area& area);
    void rail(const QPolygonF& line);
    bool streets();
    enum class Part { Casings, Fills };
    bool lines(Part part, bool raised);
    bool signs();
    void closedSign(const Stroke& stroke);
    void arrows(const Stroke& stroke);

    [[nodiscard]] double widthOf(const Stroke& stroke) const {
        return streetWidth(stroke.kind, camera_.feetPerPixel());
    }
    /// Motorways pass over everything else.
    [[nodiscard]] static bool isRaised(const Stroke& stroke) {
        return rankOf(stroke.kind) >= rankOf(StreetClass::Trunk);
    }
    [[nodiscard]] Line lineOf(const Stroke& stroke) const {
        const QPolygonF points = thinned(stroke.points, camera_);
        return {points.begin(), points.end()};
    }

    QPainter& painter_;
    const GroundPart& ground_;
    const Camera& camera_;
    const Theme& theme_;
    const KeepGoing& keepGoing_;
};

bool GroundPainter::areas() {
    return std::ranges::all_of(ground_.areas, [&](const Area& area) {
        this->area(area);
        return goesOn();
    });
}

void GroundPainter::area(const Area& area) {
    const QColor colour = theme_.areas.at(static_cast<std::size_t>(area.kind));
    QPainterPath path;
    for (const auto& ring : *area.rings) {
        const QPolygonF line = thinned(ring, camera_);
        if (area.kind == GroundKind::Rail) {
            rail(line);
        } else if (area.kind == GroundKind::Stream) {
            painter_.strokePath(
                [&] {
                    QPainterPath stream;
                    stream.addPolygon(line);
                    return stream;
                }(),
                penOf(colour, 1.6));
        } else {
            path.addPolygon(line);
            path.closeSubpath();
        }
    }
    painter_.fillPath(path, colour);
}

void GroundPainter::rail(const QPolygonF& line) {
    constexpr double TicksBelow = 20;  ///< feet a pixel
    const QColor colour = theme_.areas.at(static_cast<std::size_t>(GroundKind::Rail));
    painter_.setPen(penOf(colour, camera_.feetPerPixel() < TicksBelow ? 1.6 : 1));
    painter_.drawPolyline(line);
    if (camera_.feetPerPixel() < TicksBelow) {
        QPen ticks(colour, 5, Qt::CustomDashLine, Qt::FlatCap);
        ticks.setDashPattern({0.3, 1.1});
        painter_.setPen(ticks);
        painter_.drawPolyline(line);
    }
}

bool GroundPainter::streets() {
    return lines(Part::Casings, false) && lines(Part::Fills, false) && lines(Part::Casings, true) &&
           lines(Part::Fills, true);
}

bool GroundPainter::lines(Part part, bool raised) {
    for (const Stroke& stroke : ground_.strokes) {
        const double width = widthOf(stroke);
        const bool isCased = width >= CasedFrom;
        const StreetColours& colours = theme_.of(stroke.kind);
        if (isRaised(stroke) == raised && (isCased || part == Part::Fills)) {
            painter_.setPen(part == Part::Casings
                                ? penOf(colours.casing, width + 2)
                                : penOf(isCased ? colours.fill : colours.casing, width));
            painter_.drawPolyline(thinned(stroke.points, camera_));
        }
        if (!goesOn()) {
            return false;
        }
    }
    return true;
}

bool GroundPainter::signs() {
    for (const Stroke& stroke : ground_.strokes) {
        if (stroke.closed) {
            closedSign(stroke);
        } else if (stroke.oneWay && camera_.feetPerPixel() < OneWayArrowsBelow) {
            arrows(stroke);
        }
        if (!goesOn()) {
            return false;
        }
    }
    return true;
}

void GroundPainter::closedSign(const Stroke& stroke) {
    constexpr double Least = 5;
    QPen pen = penOf(theme_.warning, std::max(widthOf(stroke), Least));
    pen.setCapStyle(Qt::FlatCap);
    pen.setBrush(QBrush(theme_.warning, Qt::DiagCrossPattern));
    painter_.setPen(pen);
    painter_.drawPolyline(thinned(stroke.points, camera_));
}

void GroundPainter::arrows(const Stroke& stroke) {
    constexpr double Apart = 140, Half = 5.5, Head = 3.2;
    painter_.setPen(penOf(theme_.streetName, 1));
    const Line line = lineOf(stroke);
    for (const LinePart& part : clipped(line, QRectF({}, camera_.size()))) {
        for (const LinePlace& place : placesAlong(part, Apart)) {
            const QPointF tip = place.at + place.along * Half;
            const QPointF back = tip - place.along * Head;
            painter_.drawLine(place.at - place.along * Half, tip);
            painter_.drawLine(back + rightOf(place.along) * Head * 0.8, tip);
            painter_.drawLine(back - rightOf(place.along) * Head * 0.8, tip);
        }
    }
}

TextInk inksOf(NameInk ink, const Theme& theme) {
    switch (ink) {
        case NameInk::Park:
            return {theme.parkName, theme.streetNameHalo};
        case NameInk::Water:
            return {theme.waterName, theme.streetNameHalo};
        default:
            return {theme.streetName, theme.streetNameHalo};
    }
}

}  // namespace

bool paintGround(QPainter& painter, const GroundPart& ground, const Camera& camera,
                 const Theme& theme, const KeepGoing& keepGoing) {
    return GroundPainter(painter, ground, camera, theme, keepGoing).paint();
}

void paintNames(QPainter& painter, Stamps& stamps, TextWidths& widths,
                const std::vector<PlacedName>& names, const Theme& theme) {
    for (const PlacedName& name : names) {
        const TextInk inks = inksOf(name.style.ink, theme);
        const auto paint = [&](const TextInk& with) {
            for (const PlacedText& text : name.texts) {
                paintText(painter, stamps, text, name.style, with, widths(text.text, name.style));
            }
        };
        if (name.texts.size() > 1) {
            // The outline of a letter must not cover its neighbour.
            paint({Qt::transparent, inks.halo});
            paint({inks.ink, Qt::transparent});
        } else {
            paint(inks);
        }
    }
}

}  // namespace map
