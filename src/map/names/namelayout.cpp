#include "map/names/namelayout.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <optional>

#include "map/ground/zoomrules.h"
#include "map/names/abbreviation.h"
#include "map/names/occupied.h"

namespace map {

namespace {

using streets::GroundKind;
using streets::StreetClass;

constexpr double ThinPixels = 1.2;
constexpr double WayBox = 8;         ///< pixels
constexpr double Gap = 2;            ///< pixels between names
constexpr double SideGap = 4;        ///< pixels between a way and the name beside it
constexpr double LetterTurn = 24;    ///< degrees between neighbouring letters, at the most
constexpr double StraightTurn = 5;   ///< degrees that a text set as one may bend
constexpr double WholeTurn = 110;    ///< degrees from a name's first letter to its last
constexpr double AgainPixels = 430;  ///< from one place of a name to the next one
constexpr double AgainSmallPixels = 360;
constexpr double SlidePixels = 16;
constexpr int Slides = 24;  ///< to each side

double degreesOf(QPointF way) { return std::atan2(way.y(), way.x()) * 180 / std::numbers::pi; }

/// Between two directions, 0 to 180.
double turnBetween(QPointF one, QPointF other) {
    const double cosine = std::clamp(dot(one, other), -1.0, 1.0);
    return std::acos(cosine) * 180 / std::numbers::pi;
}

NameStyle styleOf(StreetClass kind) {
    switch (kind) {
        case StreetClass::Motorway:
        case StreetClass::Trunk:
        case StreetClass::Primary:
            return {12, true};
        case StreetClass::Secondary:
            return {11, true};
        case StreetClass::Tertiary:
            return {11};
        default:
            return {10};
    }
}

double againOf(StreetClass kind) {
    return rankOf(kind) >= rankOf(StreetClass::Tertiary) ? AgainPixels : AgainSmallPixels;
}

/// Letters with the marks that belong to them.
std::vector<std::string_view> lettersOf(std::string_view text) {
    std::vector<std::string_view> letters;
    std::size_t from = 0;
    for (std::size_t at = 1; at <= text.size(); ++at) {
        const bool goesOn =
            at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
        if (!goesOn) {
            letters.push_back(text.substr(from, at - from));
            from = at;
        }
    }
    return letters;
}

bool isLatin(std::string_view text) {
    return std::ranges::all_of(text, [](char letter) {
        return static_cast<unsigned char>(letter) < 0xCC;  // up to U+02FF, no marks of their own
    });
}

Line pixelsOf(std::span<const geo::Feet> places, const Camera& camera) {
    Line line;
    line.reserve(places.size());
    for (const geo::Feet place : places) {
        line.push_back(camera.toPixels(place));
    }
    return line;
}

/// A visible part of a street that may carry its name.
struct Carrier {
    const Stroke* stroke;
    MeasuredLine line;
};

class Layout {
public:
    Layout(const Camera& camera, const Surroundings& surroundings, const TextWidth& widthOf)
        : camera_(camera), widthOf_(widthOf), picture_({}, camera.size()) {
        for (const QRectF& box : surroundings.reserved) {
            taken_.take(box);
        }
        for (const Line& way : surroundings.ways) {
            takeWay(way);
        }
    }

    void area(const Area& area);
    void house(const House& house);
    void street(const Carrier& carrier);
    [[nodiscard]] std::vector<Carrier> carriers(const std::vector<Stroke>& strokes) const;
    [[nodiscard]] std::vector<PlacedName> take() { return std::move(names_); }

private:
    enum class Fit { Free, OnWay, Taken };

    void takeWay(const Line& way);
    [[nodiscard]] Fit fitOf(const std::vector<QRectF>& boxes) const;
    [[nodiscard]] bool isNearItself(const std::string& name, QPointF at, double again) const;
    void place(PlacedName name, const std::string& spelled, QPointF at);

    /// At one place of the line: on it, or beside it where a way runs on it.
    bool placeAt(const Carrier& carrier, const std::string& text, double middle);
    void placeFrom(const Carrier& carrier, const std::string& text, double width,
                   const std::pair<double, double>& among, double wanted);
    [[nodiscard]] std::optional<PlacedName> along(const MeasuredLine& line, double middle,
                                                  const std::string& text,
                                                  const NameStyle& style) const;
    [[nodiscard]] std::optional<PlacedName> letterwise(const MeasuredLine& line, double from,
                                                       double width, bool isTurned,
                                                       const PlacedName& whole) const;
    [[nodiscard]] static std::vector<QRectF> boxesAlong(const MeasuredLine& line, double from,
                                                        double to, int pixels);

    const Camera& camera_;
    const TextWidth& widthOf_;
    QRectF picture_;
    Occupied taken_;
    Occupied ways_;
    std::map<std::string, std::vector<QPointF>, std::less<>> placed_;
    std::vector<PlacedName> names_;
};

void Layout::takeWay(const Line& way) {
    for (const LinePart& part : clipped(way, picture_)) {
        const MeasuredLine line(part.points);
        const int boxes = static_cast<int>(line.length() / WayBox) + 2;
        for (int i = 0; i < boxes; ++i) {
            const QPointF centre = line.at(i * WayBox).at;
            ways_.take({centre.x() - WayBox / 2, centre.y() - WayBox / 2, WayBox, WayBox});
        }
    }
}

Layout::Fit Layout::fitOf(const std::vector<QRectF>& boxes) const {
    Fit fit = Fit::Free;
    for (const QRectF& box : boxes) {
        const QRectF wide = box.adjusted(-Gap, -Gap, Gap, Gap);
        if (!picture_.contains(wide) || taken_.meets(wide)) {
            return Fit::Taken;
        }
        if (ways_.meets(box)) {
            fit = Fit::OnWay;
        }
    }
    return fit;
}

bool Layout::isNearItself(const std::string& name, QPointF at, double again) const {
    const auto found = placed_.find(name);
    return found != placed_.end() && std::ranges::any_of(found->second, [&](QPointF other) {
               return lengthOf(other - at) < again;
           });
}

void Layout::place(PlacedName name, const std::string& spelled, QPointF at) {
    for (const QRectF& box : name.boxes) {
        taken_.take(box);
    }
    placed_[spelled].push_back(at);
    names_.push_back(std::move(name));
}

std::vector<QRectF> Layout::boxesAlong(const MeasuredLine& line, double from, double to,
                                       int pixels) {
    const double side = pixels * 1.2;
    const QPointF way = line.at(to).at - line.at(from).at;
    std::vector<QRectF> boxes;
    const auto boxAt = [&](double at) {
        const QPointF centre = line.at(at).at;
        boxes.emplace_back(centre.x() - side / 2, centre.y() - side / 2, side, side);
    };
    const bool isUpright = std::min(std::abs(way.x()), std::abs(way.y())) < 1 &&
                           std::abs(lengthOf(way) - (to - from)) < 1;
    if (isUpright) {
        const QRectF core = QRectF(line.at(from).at, line.at(to).at).normalized();
        const double thick = side / 2;
        return {std::abs(way.x()) > std::abs(way.y()) ? core.adjusted(0, -thick, 0, thick)
                                                      : core.adjusted(-thick, 0, thick, 0)};
    }
    const int steps = std::max(1, static_cast<int>(std::ceil((to - from) / (side / 2))));
    for (int i = 0; i <= steps; ++i) {
        boxAt(from + (to - from) * i / steps);
    }
    return boxes;
}

std::optional<PlacedName> Layout::along(const MeasuredLine& line, double middle,
                                        const std::string& text, const NameStyle& style) const {
    const double width = widthOf_(text, style);
    const double from = middle - width / 2;
    if (from < 0 || from + width > line.length()) {
        return {};
    }
    const QPointF begin = line.at(from).at, end = line.at(from + width).at;
    const QPointF chord = end - begin;
    const bool isTurned = std::abs(chord.x()) < 1 ? chord.y() > 0 : chord.x() < 0;
    PlacedName name{style, {}, boxesAlong(line, from, from + width, style.pixels)};
    const double length = lengthOf(chord);
    if (length > width - 1 &&
        std::max(turnBetween(line.at(from).along, chord / length),
                 turnBetween(line.at(from + width).along, chord / length)) < StraightTurn) {
        name.texts.push_back({text, (begin + end) / 2, degreesOf(isTurned ? -chord : chord)});
        return name;
    }
    name.texts.push_back({text, {}, 0});
    return isLatin(text) ? letterwise(line, from, width, isTurned, name) : std::nullopt;
}

std::optional<PlacedName> Layout::letterwise(const MeasuredLine& line, double from, double width,
                                             bool isTurned, const PlacedName& whole) const {
    PlacedName name{whole.style, {}, whole.boxes};
    double walked = 0;
    std::optional<QPointF> first, before;
    for (const std::string_view letter : lettersOf(whole.texts.front().text)) {
        const double wide = widthOf_(letter, whole.style);
        const double there = walked + wide / 2;
        const LinePlace at = line.at(isTurned ? from + width - there : from + there);
        const QPointF along = isTurned ? -at.along : at.along;
        if ((before && turnBetween(*before, along) >= LetterTurn) ||
            (first && turnBetween(*first, along) >= WholeTurn)) {
            return {};
        }
        name.texts.push_back({std::string(letter), at.at, degreesOf(along)});
        first = first.value_or(along);
        before = along;
        walked += wide;
    }
    return name;
}

bool Layout::placeAt(const Carrier& carrier, const std::string& text, double middle) {
    const StreetClass kind = carrier.stroke->kind;
    const NameStyle style = styleOf(kind);
    const MeasuredLine& line = carrier.line;
    const QPointF centre = line.at(middle).at;
    const std::string spelled(carrier.stroke->name);
    if (isNearItself(spelled, centre, againOf(kind))) {
        return false;
    }
    auto name = along(line, middle, text, style);
    if (!name) {
        return false;
    }
    const Fit fit = fitOf(name->boxes);
    if (fit == Fit::Free) {
        place(std::move(*name), spelled, centre);
        return true;
    }
    if (fit == Fit::Taken) {
        return false;
    }
    const double aside = std::max(streetWidth(kind, camera_.feetPerPixel()) / 2, WayBox) + SideGap +
                         style.pixels / 2.0;
    for (const double side : {aside, -aside}) {
        const MeasuredLine shifted(beside(line.points(), side));
        const double there = line.length() > 0 ? middle * shifted.length() / line.length() : 0;
        auto next = along(shifted, there, text, style);
        if (next && fitOf(next->boxes) == Fit::Free) {
            place(std::move(*next), spelled, centre);
            return true;
        }
    }
    return false;
}

/// Nearest to the wanted place first; then again on both sides of where it stands.
void Layout::placeFrom(const Carrier& carrier, const std::string& text, double width,
                       const std::pair<double, double>& among, double wanted) {
    const double low = among.first + width / 2, high = among.second - width / 2;
    if (low > high) {
        return;
    }
    const double again = againOf(carrier.stroke->kind);
    for (int slide = 0; slide <= 2 * Slides; ++slide) {
        const int steps = (slide + 1) / 2;
        const double shift = (slide % 2 == 0 ? steps : -steps) * SlidePixels;
        const double middle = std::clamp(wanted, low, high) + shift;
        if (middle < low || middle > high) {
            continue;
        }
        if (placeAt(carrier, text, middle)) {
            placeFrom(carrier, text, width, {among.first, middle - again + width / 2},
                      middle - again);
            placeFrom(carrier, text, width, {middle + again - width / 2, among.second},
                      middle + again);
            return;
        }
    }
}

void Layout::street(const Carrier& carrier) {
    const NameStyle style = styleOf(carrier.stroke->kind);
    const std::string spelled(carrier.stroke->name);
    const std::string brief = abbreviated(spelled);
    const bool isBrief = camera_.feetPerPixel() > ShortNamesAbove ||
                         widthOf_(spelled, style) > carrier.line.length();
    const std::string& text = isBrief ? brief : spelled;
    placeFrom(carrier, text, widthOf_(text, style), {0, carrier.line.length()},
              carrier.line.length() / 2);
}

std::vector<Carrier> Layout::carriers(const std::vector<Stroke>& strokes) const {
    constexpr double Shortest = 18;
    std::vector<Carrier> carriers;
    for (const Stroke& stroke : strokes) {
        if (stroke.name.empty() || camera_.feetPerPixel() >= namedBelow(stroke.kind)) {
            continue;
        }
        for (const LinePart& part : clipped(pixelsOf(stroke.points, camera_), picture_)) {
            MeasuredLine line(simplified(part.points, ThinPixels));
            if (line.length() >= Shortest) {
                carriers.push_back({&stroke, std::move(line)});
            }
        }
    }
    std::ranges::stable_sort(carriers, [](const Carrier& one, const Carrier& other) {
        const int left = rankOf(one.stroke->kind), right = rankOf(other.stroke->kind);
        return left != right ? left > right : one.line.length() > other.line.length();
    });
    return carriers;
}

bool isInside(const Line& ring, QPointF place) {
    bool inside = false;
    for (std::size_t i = 0, before = ring.size() - 1; i < ring.size(); before = i++) {
        const QPointF a = ring[i], b = ring[before];
        if ((a.y() > place.y()) != (b.y() > place.y()) &&
            place.x() < (b.x() - a.x()) * (place.y() - a.y()) / (b.y() - a.y()) + a.x()) {
            inside = !inside;
        }
    }
    return inside;
}

QRectF boundsOf(const Line& ring) {
    QRectF bounds(ring.front(), QSizeF(0, 0));
    for (const QPointF place : ring) {
        bounds.setCoords(std::min(bounds.left(), place.x()), std::min(bounds.top(), place.y()),
                         std::max(bounds.right(), place.x()), std::max(bounds.bottom(), place.y()));
    }
    return bounds;
}

void Layout::area(const Area& area) {
    const bool isWater = area.kind == GroundKind::Water;
    if (area.name.empty() || (!isWater && area.kind != GroundKind::Park)) {
        return;
    }
    const NameStyle style{11, false, isWater ? NameInk::Water : NameInk::Park};
    const double width = widthOf_(area.name, style);
    for (const auto& places : *area.rings) {
        if (places.size() < 3) {
            continue;
        }
        const Line ring = pixelsOf(places, camera_);
        const QRectF seen = boundsOf(ring) & picture_;
        const QPointF centre = seen.center();
        if (seen.width() < width || seen.height() < 2.0 * style.pixels || !isInside(ring, centre)) {
            continue;
        }
        const double height = style.pixels * 1.3;
        PlacedName name{style,
                        {{std::string(area.name), centre, 0}},
                        {{centre.x() - width / 2, centre.y() - height / 2, width, height}}};
        const std::string spelled(area.name);
        if (!isNearItself(spelled, centre, AgainPixels) && fitOf(name.boxes) == Fit::Free) {
            place(std::move(name), spelled, centre);
        }
    }
}

void Layout::house(const House& house) {
    const NameStyle style{10, false, NameInk::House};
    const double width = widthOf_(house.number, style), height = style.pixels * 1.2;
    const QPointF centre = camera_.toPixels(house.at);
    PlacedName name{style,
                    {{std::string(house.number), centre, 0}},
                    {{centre.x() - width / 2, centre.y() - height / 2, width, height}}};
    if (fitOf(name.boxes) == Fit::Free) {
        place(std::move(name), {}, centre);
    }
}

}  // namespace

std::vector<PlacedName> layNames(const GroundPart& ground, const Camera& camera,
                                 const Surroundings& surroundings, const TextWidth& widthOf,
                                 const KeepGoing& keepGoing) {
    Layout layout(camera, surroundings, widthOf);
    for (const Area& area : ground.areas) {
        layout.area(area);
    }
    for (const Carrier& carrier : layout.carriers(ground.strokes)) {
        if (keepGoing && !keepGoing()) {
            return layout.take();
        }
        layout.street(carrier);
    }
    for (const House& house : ground.houses) {
        layout.house(house);
    }
    return layout.take();
}

}  // namespace map
