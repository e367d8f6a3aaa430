#include "map/drawing/scenepainter.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "map/drawing/symbols.h"
#include "map/ground/zoomrules.h"

namespace map {

namespace {

constexpr double ChevronApart = 54;
constexpr double BusBelow = 2.5;  ///< feet a pixel

QPen penOf(const QColor& colour, double width) {
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

QPen dashedPen(const QColor& colour, double width, double on, double off) {
    QPen pen(colour, width, Qt::CustomDashLine, Qt::FlatCap, Qt::RoundJoin);
    pen.setDashPattern({on / width, off / width});
    return pen;
}

/// Clipped before it is painted: dashes far outside cost as much as those that are seen.
void paintDashed(QPainter& painter, const Line& line, QPen pen, const QRectF& seen) {
    for (const LinePart& part : clipped(line, seen)) {
        pen.setDashOffset(part.from / pen.widthF());
        painter.setPen(pen);
        painter.drawPolyline(part.points.data(), static_cast<int>(part.points.size()));
    }
}

void paintLine(QPainter& painter, const Line& line, const QPen& pen) {
    painter.setPen(pen);
    painter.drawPolyline(line.data(), static_cast<int>(line.size()));
}

/// Only what is seen: a way goes far beyond the picture.
void paintWay(QPainter& painter, const Line& line, const QPen& pen, const QRectF& seen) {
    for (const LinePart& part : clipped(line, seen)) {
        paintLine(painter, part.points, pen);
    }
}

}  // namespace

ScenePainter::ScenePainter(QPainter& painter, Stamps& stamps, const Scene& scene,
                           const SceneLayout& layout, const Camera& camera, const Theme& theme)
    : painter_(painter),
      stamps_(stamps),
      scene_(scene),
      layout_(layout),
      camera_(camera),
      theme_(theme) {
    painter_.setRenderHint(QPainter::Antialiasing);
}

QColor ScenePainter::colourOf(std::size_t run) const {
    const int colour = scene_.runs[run].colour;
    return scene_.runs.size() == 1 && colour == 0 ? theme_.way : theme_.run(colour);
}

QColor ScenePainter::pale(const QColor& colour) const {
    constexpr double Share = 0.42;
    const auto mix = [](int one, int other) {
        return static_cast<int>(std::lround(one * Share + other * (1 - Share)));
    };
    const QColor& ground = theme_.ground;
    return {mix(colour.red(), ground.red()), mix(colour.green(), ground.green()),
            mix(colour.blue(), ground.blue())};
}

QRectF ScenePainter::seen(double around) const {
    return QRectF({}, camera_.size()).adjusted(-around, -around, around, around);
}

/// The grid has streets in the middle of its blocks only; places lie anywhere.
void ScenePainter::paintOwnStreets(const WayChoice& ways) {
    constexpr double CasedFrom = 1.9, Casing = 2;
    constexpr auto Kind = streets::StreetClass::Residential;
    const double width = streetWidth(Kind, camera_.feetPerPixel());
    const auto paint = [&](const QColor& colour, double thick) {
        for (std::size_t i = 0; i < layout_.ownStreets.size(); ++i) {
            if (ways[i]) {
                paintWay(painter_, layout_.ownStreets[i], penOf(colour, thick), seen(thick));
            }
        }
    };
    const bool isCased = width >= CasedFrom;
    paint(theme_.of(Kind).casing, isCased ? width + Casing : width);
    if (isCased) {
        paint(theme_.of(Kind).fill, width);
    }
}

void ScenePainter::paintWays() {
    const WayChoice all(layout_.ways.size(), true);
    paintOwnStreets(all);
    paintOldWay();
    paintLegs(all);
    paintLegPlates();
}

void ScenePainter::paintLegs(const WayChoice& ways) {
    for (std::size_t i = 0; i < layout_.ways.size(); ++i) {
        if (ways[i] && legOf(layout_.ways[i]).isEmpty) {
            paintEmptyLeg(layout_.ways[i]);
        }
    }
    for (const bool chosen : {false, true}) {
        for (std::size_t run = 0; run < scene_.runs.size(); ++run) {
            if (scene_.runs[run].isChosen == chosen) {
                paintRun(run, ways);
            }
        }
    }
}

void ScenePainter::paintLegPlates() {
    for (const PlateMark& plate : layout_.plates) {
        if (plate.kind == PlateMark::Kind::Leg || plate.kind == PlateMark::Kind::EmptyLeg) {
            paintPlate(plate);
        }
    }
}

void ScenePainter::paintOldWay() {
    constexpr double Thick = 3.6;
    for (const Line& line : layout_.oldWay) {
        paintWay(painter_, line, penOf(theme_.wayCasing, Thick + 2), seen(Thick));
        paintDashed(painter_, line, dashedPen(theme_.oldWay, Thick, 8, 4), seen(Thick));
    }
}

void ScenePainter::paintRun(std::size_t run, const WayChoice& chosen) {
    const double width =
        wayWidth(scene_, scene_.runs[run], camera_.feetPerPixel()) + theme_.wayMore;
    const double casing = scene_.runs.size() > 1 ? 1.6 : 3;
    std::vector<const WayMark*> ways;
    for (const bool pale : {true, false}) {
        for (std::size_t i = 0; i < layout_.ways.size(); ++i) {
            const WayMark& way = layout_.ways[i];
            if (chosen[i] && way.run == run && !legOf(way).isEmpty && legOf(way).isPale == pale) {
                ways.push_back(&way);
            }
        }
    }
    for (const WayMark* way : ways) {
        paintWay(painter_, way->line, penOf(theme_.wayCasing, width + casing), seen(width));
    }
    const QColor colour = colourOf(run);
    for (const WayMark* way : ways) {
        const QPen pen = penOf(legOf(*way).isPale ? pale(colour) : colour, width);
        paintWay(painter_, way->line, pen, seen(width));
    }
    if (scene_.runs[run].isChosen) {
        for (const WayMark* way : ways) {
            chevrons(way->line, ChevronApart, width * 0.55, theme_.wayCasing, 1.6);
        }
    }
}

void ScenePainter::paintEmptyLeg(const WayMark& way) {
    constexpr double Thick = 3.8, Apart = 80, Size = 3.6;
    paintWay(painter_, way.line, penOf(theme_.wayCasing, Thick + 3), seen(Thick));
    paintDashed(painter_, way.line, dashedPen(theme_.emptyWay, Thick, 4, 3.4), seen(Thick));
    chevrons(way.line, Apart, Size, theme_.wayCasing, 6);
    chevrons(way.line, Apart, Size, theme_.school, 2);
}

void ScenePainter::chevrons(const Line& line, double apart, double size, const QColor& colour,
                            double thick) {
    painter_.setPen(QPen(colour, thick, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    for (const LinePart& part : clipped(line, seen(size))) {
        for (const LinePlace& place : placesAlong(part, apart)) {
            const QPointF tip = place.at + place.along * size;
            const QPointF aside = rightOf(place.along) * size;
            const std::array chevron{place.at + aside, tip, place.at - aside};
            painter_.drawPolyline(chevron.data(), static_cast<int>(chevron.size()));
        }
    }
}

void ScenePainter::paintHomes() {
    constexpr double Thick = 2;
    constexpr double Side = 22;
    constexpr double OtherRadius = 3;
    constexpr NameStyle Style{11, true, NameInk::House};
    if (camera_.feetPerPixel() >= HomesBelow) {
        return;
    }
    TextWidths widths;
    for (const DrawnHome& home : scene_.homes) {
        Line walk;
        for (const geo::Feet place : home.walk) {
            walk.push_back(camera_.toPixels(place));
        }
        const QColor colour = home.crosses ? theme_.crossingWalk : theme_.walk;
        paintDashed(painter_, walk, dashedPen(colour, Thick, 6, 4), seen(Thick));
    }
    for (const DrawnHome& home : scene_.homes) {
        const QPointF at = camera_.toPixels(home.at);
        if (!seen(Side).contains(at)) {
            continue;
        }
        const QColor colour = home.crosses ? theme_.crossingWalk : theme_.walk;
        if (home.walk.empty()) {
            painter_.setPen(QPen(theme_.wayCasing, 1));
            painter_.setBrush(colour);
            painter_.drawEllipse(at, OtherRadius, OtherRadius);
        } else {
            paintHome(painter_, stamps_, at, colour, theme_);
        }
        const double width = widths(home.label, Style);
        paintText(painter_, stamps_, {home.label, at + QPointF(width / 2 + 12, 0), 0}, Style,
                  {theme_.plateInk, theme_.streetNameHalo}, width);
    }
}

void ScenePainter::paintMarks() {
    for (const StopMark& mark : layout_.stops) {
        paintStem(mark);
    }
    for (const StopMark& mark : layout_.stops) {
        paintStop(mark);
    }
    for (std::size_t i = 0; i < layout_.places.size(); ++i) {
        const auto paint = scene_.places[i].kind == PlaceKind::School ? paintSchool : paintGarage;
        paint(painter_, stamps_, layout_.places[i], theme_);
    }
    for (const PlateMark& plate : layout_.plates) {
        if (plate.kind != PlateMark::Kind::Leg && plate.kind != PlateMark::Kind::EmptyLeg) {
            paintPlate(plate);
        }
    }
}

void ScenePainter::paintStem(const StopMark& mark) {
    const DrawnStop& stop = scene_.runs[mark.run].stops[mark.stop];
    if (!mark.onWay) {
        return;
    }
    if (stop.showsBus && camera_.feetPerPixel() < BusBelow) {
        paintBus(painter_, *mark.onWay, stop.heading, camera_.feetPerPixel(), theme_);
    }
    const bool isGrey = stop.look == StopLook::Candidate && !stop.isChosen;
    const QColor colour = isGrey ? theme_.candidate : colourOf(mark.run);
    const Line stem{*mark.onWay, mark.centre};
    paintLine(painter_, stem, penOf(theme_.wayCasing, 5));
    paintLine(painter_, stem, penOf(stop.isPale ? pale(colour) : colour, 3));
}

void ScenePainter::paintStop(const StopMark& mark) {
    const DrawnStop& stop = scene_.runs[mark.run].stops[mark.stop];
    if (!seen(DiscRadius * 2).contains(mark.centre)) {
        return;
    }
    const QColor strong =
        stop.look == StopLook::Candidate && !stop.isChosen ? theme_.candidate : colourOf(mark.run);
    const DiscLook look{stop.isPale ? pale(strong) : strong, theme_.onRun, theme_.wayCasing,
                        stop.isChosen};
    if (stop.look == StopLook::Ring) {
        paintRing(painter_, stamps_, mark.centre, look);
    } else {
        paintDisc(painter_, stamps_, mark.centre, toQt(stop.number), look);
    }
    if (stop.isWarned) {
        const double aside = mark.radius * 0.8 + (stop.isChosen ? 2 : 0);
        paintWarning(painter_, stamps_, mark.centre + QPointF(aside, -aside), theme_);
    }
}

void ScenePainter::paintPlate(const PlateMark& plate) {
    constexpr double Round = 8;
    if (!seen(plate.box.width()).contains(plate.box.center())) {
        return;
    }
    PlateLook look{theme_.plate, theme_.plateInk, theme_.plateFrame};
    switch (plate.kind) {
        case PlateMark::Kind::Leg:
            look.frame = colourOf(plate.run);
            look.corner = Round;
            break;
        case PlateMark::Kind::EmptyLeg:
            look.frame = theme_.emptyWay;
            look.corner = Round;
            break;
        case PlateMark::Kind::Run:
            look = {colourOf(plate.run), theme_.onRun, theme_.wayCasing};
            break;
        case PlateMark::Kind::Place:
            look.pixels = PlaceStyle.pixels;
            break;
        case PlateMark::Kind::Stop:
            break;
    }
    map::paintPlate(painter_, stamps_, plate.box, plate.text, look);
}

}  // namespace map
