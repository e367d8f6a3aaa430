#include "map/drawing/scenelayout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "map/ground/zoomrules.h"
#include "map/names/occupied.h"

namespace map {

namespace {

constexpr double AsideFeet = 9;      ///< of the way from the middle of the street
constexpr double AsidePixels = 2.6;  ///< at the least
constexpr double LanePixels = 4.4;
constexpr double SmoothPixels = 0.6;
constexpr double StubPixels = 12;
constexpr double StemPixels = 9;  ///< from the way to the edge of a disc
constexpr double PlatedLeg = 50;  ///< a shorter leg has no plate
constexpr double PlateHeight = 17;

double asideOf(const Camera& camera) {
    return std::max(AsideFeet / camera.feetPerPixel(), AsidePixels);
}

QPointF headingOf(double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    return {std::sin(angle), -std::cos(angle)};
}

/// The line of a leg in pixels, with how far aside each of its segments is driven.
struct Aside {
    Line line;
    std::vector<double> pixels;
};

Aside asideLine(const std::vector<geo::Feet>& places, const std::vector<int>& lanes,
                const Camera& camera) {
    Aside aside;
    for (std::size_t from = 0; from < lanes.size();) {
        std::size_t to = from + 1;
        while (to < lanes.size() && lanes[to] == lanes[from]) {
            ++to;
        }
        Line stretch;
        for (std::size_t i = from; i <= to; ++i) {
            stretch.push_back(camera.toPixels(places[i]));
        }
        stretch = simplified(stretch, SmoothPixels);
        aside.line.insert(aside.line.end(), stretch.begin() + (aside.line.empty() ? 0 : 1),
                          stretch.end());
        aside.pixels.resize(aside.line.size() - 1, asideOf(camera) + lanes[from] * LanePixels);
        from = to;
    }
    return aside;
}

bool isStub(QPointF end, QPointF corner, QPointF behind) {
    const QPointF stub = corner - end, next = behind - corner;
    return lengthOf(stub) < StubPixels && dot(stub, next) < 0.7 * lengthOf(stub) * lengthOf(next);
}

/// A short piece before the first corner would look like a stub at the disc.
void cutStubs(Aside& aside) {
    if (aside.line.size() > 2 && isStub(aside.line[0], aside.line[1], aside.line[2])) {
        aside.line.erase(aside.line.begin());
        aside.pixels.erase(aside.pixels.begin());
    }
    const std::size_t size = aside.line.size();
    if (size > 2 && isStub(aside.line[size - 1], aside.line[size - 2], aside.line[size - 3])) {
        aside.line.pop_back();
        aside.pixels.pop_back();
    }
}

class Laying {
public:
    Laying(const Scene& scene, bool hasSides, const std::vector<RunLanes>& lanes,
           const Camera& camera, const Sight& sight, TextWidths& widths)
        : scene_(scene),
          hasSides_(hasSides),
          lanes_(lanes),
          camera_(camera),
          sight_(sight),
          widths_(widths) {}

    SceneLayout lay() {
        layWays();
        layStops();
        layPlaces();
        layStopPlates();
        layRunPlates();
        layLegPlates();
        return std::move(layout_);
    }

private:
    void layWays();
    void layStops();
    void layStop(std::size_t run, std::size_t index);
    void layPlaces();
    void layStopPlates();
    void layRunPlates();
    void layLegPlates();
    void layLegPlate(const WayMark& way, const DrawnLeg& leg);

    [[nodiscard]] std::optional<QPointF> onWay(std::size_t run, const DrawnStop& stop) const;
    [[nodiscard]] QPointF discAt(QPointF onWay, const DrawnStop& stop) const;
    [[nodiscard]] QSizeF plateSize(const QString& text, const NameStyle& style) const {
        constexpr double Around = 12;
        const double height = style.pixels > PlateStyle.pixels ? PlateHeight + 3 : PlateHeight;
        return {widths_(text.toStdString(), style) + Around, height};
    }
    /// Right of what it belongs to, or left, below, above, wherever nothing stands and it is seen.
    void addBeside(PlateMark plate, QPointF centre, double radius, const NameStyle& style);
    [[nodiscard]] std::vector<QPointF> besides(QPointF centre, double radius, QSizeF size) const;
    [[nodiscard]] bool isFree(const QRectF& box) const { return !taken_.meets(box); }
    void add(PlateMark plate) {
        taken_.take(plate.box);
        layout_.plates.push_back(std::move(plate));
    }
    void takeAround(QPointF centre, double radius) {
        taken_.take({centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius});
    }

    const Scene& scene_;
    bool hasSides_;
    const std::vector<RunLanes>& lanes_;
    const Camera& camera_;
    const Sight& sight_;
    TextWidths& widths_;
    SceneLayout layout_;
    Occupied taken_;
};

void Laying::layWays() {
    for (std::size_t run = 0; run < scene_.runs.size(); ++run) {
        const auto& legs = scene_.runs[run].legs;
        for (std::size_t leg = 0; leg < legs.size(); ++leg) {
            Aside aside = asideLine(legs[leg].line, lanes_[run][leg], camera_);
            if (!hasSides_) {
                cutStubs(aside);
                layout_.ownStreets.push_back(aside.line);
            }
            layout_.ways.push_back({run, leg, beside(aside.line, aside.pixels)});
        }
    }
    for (const auto& places : scene_.oldWay) {
        const std::vector<int> lanes(places.empty() ? 0 : places.size() - 1);
        const Aside aside = asideLine(places, lanes, camera_);
        layout_.oldWay.push_back(beside(aside.line, aside.pixels));
    }
}

/// The end of one of the run's legs that is next to where the bus halts.
std::optional<QPointF> Laying::onWay(std::size_t run, const DrawnStop& stop) const {
    constexpr double Far = 30;
    const QPointF middle = camera_.toPixels(stop.onStreet.value_or(stop.at));
    std::optional<QPointF> nearest;
    double distance = Far;
    for (const WayMark& way : layout_.ways) {
        if (way.run != run || way.line.empty()) {
            continue;
        }
        for (const QPointF end : {way.line.front(), way.line.back()}) {
            if (lengthOf(end - middle) < distance) {
                distance = lengthOf(end - middle);
                nearest = end;
            }
        }
    }
    if (!nearest && stop.onStreet) {
        nearest = middle + rightOf(headingOf(stop.heading)) * asideOf(camera_);
    }
    return nearest;
}

/// On the side of the door, clear of the discs that stand there.
QPointF Laying::discAt(QPointF onWay, const DrawnStop& stop) const {
    const QPointF right = rightOf(headingOf(stop.heading));
    const double own = dot(camera_.toPixels(stop.at) - onWay, right);
    const double least = DiscRadius + StemPixels;
    const double edge = own > least ? own : least;
    constexpr std::array Angles{0.0, 35.0, -35.0, 70.0, -70.0};
    constexpr double Next = 2 * DiscRadius + 2;
    for (const double farther : {0.0, Next, 2 * Next}) {
        for (const double degrees : Angles) {
            const double angle = degrees * std::numbers::pi / 180;
            const QPointF way(right.x() * std::cos(angle) - right.y() * std::sin(angle),
                              right.x() * std::sin(angle) + right.y() * std::cos(angle));
            const QPointF centre = onWay + way * (edge + farther);
            const double side = DiscRadius * 0.8;
            if (!taken_.meets({centre.x() - side, centre.y() - side, 2 * side, 2 * side})) {
                return centre;
            }
        }
    }
    return onWay + right * edge;
}

void Laying::layStop(std::size_t run, std::size_t index) {
    const DrawnStop& stop = scene_.runs[run].stops[index];
    StopMark mark{.run = run, .stop = index, .onWay = onWay(run, stop)};
    if (stop.look == StopLook::Ring) {
        mark.radius = RingRadius;
        mark.centre = mark.onWay.value_or(camera_.toPixels(stop.at));
        mark.onWay.reset();
    } else if (hasSides_ && stop.onStreet && mark.onWay) {
        mark.centre = discAt(*mark.onWay, stop);
    } else {
        mark.centre = camera_.toPixels(stop.at);
    }
    takeAround(mark.centre, mark.radius);
    layout_.stops.push_back(mark);
}

void Laying::layStops() {
    for (std::size_t run = 0; run < scene_.runs.size(); ++run) {
        for (std::size_t index = 0; index < scene_.runs[run].stops.size(); ++index) {
            layStop(run, index);
        }
    }
    const auto isChosen = [this](const StopMark& mark) {
        return scene_.runs[mark.run].stops[mark.stop].isChosen;
    };
    const auto isOther = [&](const StopMark& mark) { return !isChosen(mark); };
    std::stable_partition(layout_.stops.begin(), layout_.stops.end(), isOther);
}

void Laying::layPlaces() {
    for (const DrawnPlace& place : scene_.places) {
        layout_.places.push_back(camera_.toPixels(place.at));
        takeAround(layout_.places.back(), PlaceSide / 2);
    }
    for (std::size_t i = 0; i < scene_.places.size(); ++i) {
        if (!scene_.places[i].name.empty()) {
            addBeside({.kind = PlateMark::Kind::Place, .text = toQt(scene_.places[i].name)},
                      layout_.places[i], PlaceSide / 2, PlaceStyle);
        }
    }
}

/// Below and above also moved along, as far as the window's edge asks for.
std::vector<QPointF> Laying::besides(QPointF centre, double radius, QSizeF size) const {
    constexpr double Gap = 4, Edge = 2;
    const double aside = radius + Gap;
    const QPointF up(0, size.height() / 2), left(size.width() / 2, 0);
    std::vector corners{
        centre + QPointF(aside, 0) - up, centre - QPointF(aside + size.width(), 0) - up,
        centre + QPointF(0, aside) - left, centre - QPointF(0, aside + size.height()) - left};
    const double first = sight_.window.left() + Edge;
    const double last = std::max(sight_.window.right() - Edge - size.width(), first);
    for (const double y : {corners[2].y(), corners[3].y()}) {
        corners.emplace_back(std::clamp(centre.x() - left.x(), first, last), y);
    }
    return corners;
}

void Laying::addBeside(PlateMark plate, QPointF centre, double radius, const NameStyle& style) {
    const QSizeF size = plateSize(plate.text, style);
    auto corners = besides(centre, radius, size);
    if (sight_.window.contains(centre)) {
        // One that stands over something else is read at least.
        const auto isHidden = [&](QPointF corner) { return !sight_.shows(QRectF(corner, size)); };
        std::stable_partition(corners.begin(), corners.end(),
                              [&](QPointF corner) { return !isHidden(corner); });
        const auto hidden = std::ranges::find_if(corners, isHidden);
        if (hidden != corners.begin()) {
            corners.erase(hidden, corners.end());
        }
    }
    const auto found =
        std::ranges::find_if(corners, [&](QPointF corner) { return isFree(QRectF(corner, size)); });
    plate.box = QRectF(found == corners.end() ? corners.front() : *found, size);
    add(std::move(plate));
}

void Laying::layStopPlates() {
    const auto marks = layout_.stops;
    for (const StopMark& mark : marks) {
        const DrawnStop& stop = scene_.runs[mark.run].stops[mark.stop];
        if (!stop.plate.empty()) {
            addBeside({.kind = PlateMark::Kind::Stop, .text = toQt(stop.plate), .run = mark.run},
                      mark.centre, mark.radius + (stop.isChosen ? 5 : 0), PlateStyle);
        }
    }
}

void Laying::layRunPlates() {
    for (std::size_t run = 0; run < scene_.runs.size(); ++run) {
        const auto first = std::ranges::find_if(layout_.stops, [run](const StopMark& mark) {
            return mark.run == run && mark.stop == 0;
        });
        if (scene_.runs.size() > 1 && !scene_.runs[run].name.empty() &&
            first != layout_.stops.end()) {
            addBeside(
                {.kind = PlateMark::Kind::Run, .text = toQt(scene_.runs[run].name), .run = run},
                first->centre, first->radius, PlateStyle);
        }
    }
}

void Laying::layLegPlates() {
    for (const WayMark& way : layout_.ways) {
        const DrawnLeg& leg = scene_.runs[way.run].legs[way.leg];
        if (!leg.plate.empty() && !leg.isPale) {
            layLegPlate(way, leg);
        }
    }
}

void Laying::layLegPlate(const WayMark& way, const DrawnLeg& leg) {
    const MeasuredLine line(way.line);
    if (line.length() < PlatedLeg) {
        return;
    }
    const QString text = toQt(leg.plate);
    const QSizeF size = plateSize(text, PlateStyle);
    for (const double share : {0.5, 0.42, 0.58, 0.34, 0.66, 0.26, 0.74}) {
        const QPointF centre = line.at(line.length() * share).at;
        const QRectF box(centre - QPointF(size.width() / 2, size.height() / 2), size);
        if (isFree(box) && (sight_.shows(box) || !sight_.window.intersects(box))) {
            add({.kind = leg.isEmpty ? PlateMark::Kind::EmptyLeg : PlateMark::Kind::Leg,
                 .box = box,
                 .text = text,
                 .run = way.run});
            return;
        }
    }
}

}  // namespace

bool Sight::shows(const QRectF& box) const {
    return window.contains(box) && std::ranges::none_of(covered, [&](const QRectF& other) {
               return other.intersects(box);
           });
}

Surroundings SceneLayout::surroundings() const {
    Surroundings around;
    const auto take = [&](QPointF centre, double radius) {
        around.reserved.emplace_back(centre.x() - radius, centre.y() - radius, 2 * radius,
                                     2 * radius);
    };
    for (const StopMark& stop : stops) {
        take(stop.centre, stop.radius + 3);
    }
    for (const QPointF place : places) {
        take(place, PlaceSide / 2 + 2);
    }
    for (const PlateMark& plate : plates) {
        around.reserved.push_back(plate.box);
    }
    for (const WayMark& way : ways) {
        around.ways.push_back(way.line);
    }
    return around;
}

SceneLayout layScene(const Scene& scene, const std::vector<RunLanes>& lanes, bool hasSides,
                     const Camera& camera, const Sight& sight, TextWidths& widths) {
    return Laying(scene, hasSides, lanes, camera, sight, widths).lay();
}

double wayWidth(const Scene& scene, const DrawnRun& run, double feetPerPixel) {
    constexpr double Feet = 9, Least = 5, Most = 10, Among = 3, ChosenMore = 1.4;
    if (scene.runs.size() > 1) {
        return Among + (run.isChosen ? ChosenMore : 0);
    }
    return std::clamp(Feet / feetPerPixel, Least, Most);
}

std::optional<Hit> hitIn(const SceneLayout& layout, const Scene& scene, const Camera& camera,
                         QPointF pixel) {
    constexpr double Grace = 3, HomeRadius = 8, WayReach = 6;
    const auto stop = std::find_if(
        layout.stops.rbegin(), layout.stops.rend(),
        [&](const StopMark& mark) { return lengthOf(mark.centre - pixel) <= mark.radius + Grace; });
    if (stop != layout.stops.rend()) {
        return Hit{Hit::Kind::Stop, stop->run, stop->stop};
    }
    for (std::size_t i = 0; i < layout.places.size(); ++i) {
        if (lengthOf(layout.places[i] - pixel) <= PlaceSide / 2) {
            return Hit{Hit::Kind::Place, 0, i};
        }
    }
    const std::size_t homes = camera.feetPerPixel() < HomesBelow ? scene.homes.size() : 0;
    for (std::size_t i = 0; i < homes; ++i) {
        if (lengthOf(camera.toPixels(scene.homes[i].at) - pixel) <= HomeRadius) {
            return Hit{Hit::Kind::Home, 0, i};
        }
    }
    for (const PlateMark& plate : layout.plates) {
        if (plate.kind == PlateMark::Kind::Run && plate.box.contains(pixel)) {
            return Hit{Hit::Kind::Leg, plate.run, 0};
        }
    }
    std::optional<Hit> nearest;
    double distance = WayReach;
    for (const WayMark& way : layout.ways) {
        const double there = distanceTo(way.line, pixel);
        if (there <= distance) {
            distance = there;
            nearest = Hit{Hit::Kind::Leg, way.run, way.leg};
        }
    }
    return nearest;
}

}  // namespace map
