#include <algorithm>
#include <array>

#include "map/ground/camera.h"
#include "map/ground/ground.h"
#include "map/ground/strokes.h"
#include "map/ground/zoomrules.h"

namespace map {

namespace {

using streets::GroundKind;
using streets::GroundShape;

/// What is painted first: grounds, then waters on them, then what stands upright.
int orderOf(GroundKind kind) {
    constexpr std::array Order{GroundKind::School, GroundKind::Park,    GroundKind::Wood,
                               GroundKind::Pitch,  GroundKind::Water,   GroundKind::Stream,
                               GroundKind::Rail,   GroundKind::Building};
    return static_cast<int>(std::ranges::find(Order, kind) - Order.begin());
}

streets::Box boxOf(const GroundShape& shape) {
    streets::Box box = emptyBox();
    for (const auto& ring : shape.rings) {
        for (const geo::Feet place : ring) {
            stretch(box, place);
        }
    }
    return box;
}

class StreetGround : public Ground {
public:
    StreetGround(std::shared_ptr<const streets::StreetMap> streets,
                 const std::vector<std::uint32_t>& closed)
        : streets_(std::move(streets)), joined_(joinedStrokes(*streets_, closed)) {
        std::ranges::stable_sort(joined_.strokes, {},
                                 [](const JoinedStroke& stroke) { return rankOf(stroke.kind); });
        for (const JoinedStroke& stroke : joined_.strokes) {
            stretch(extent_, stroke.box.low);
            stretch(extent_, stroke.box.high);
        }
        for (const GroundShape& shape : streets_->ground) {
            areas_.push_back({&shape, boxOf(shape)});
        }
        std::ranges::stable_sort(areas_, {},
                                 [](const AreaPlace& area) { return orderOf(area.shape->kind); });
    }

    [[nodiscard]] GroundPart partIn(const streets::Box& box, double feetPerPixel) const override {
        GroundPart part;
        takeAreas(part, box, feetPerPixel);
        takeStrokes(part, box, feetPerPixel);
        if (feetPerPixel < HousesBelow) {
            takeHouses(part, box);
        }
        return part;
    }
    [[nodiscard]] streets::Box extent() const override { return extent_; }
    [[nodiscard]] std::string attribution() const override { return streets_->attribution; }
    [[nodiscard]] bool hasSides() const override { return true; }

private:
    struct AreaPlace {
        const GroundShape* shape;
        streets::Box box;
    };

    void takeAreas(GroundPart& part, const streets::Box& box, double feetPerPixel) const {
        for (const AreaPlace& area : areas_) {
            const bool isLarge = std::max(area.box.high.x - area.box.low.x,
                                          area.box.high.y - area.box.low.y) >= feetPerPixel;
            if (isLarge && feetPerPixel < shownBelow(area.shape->kind) && overlap(area.box, box)) {
                part.areas.push_back(
                    {area.shape->kind, streets_->names[area.shape->name], &area.shape->rings});
            }
        }
    }

    void takeStrokes(GroundPart& part, const streets::Box& box, double feetPerPixel) const {
        for (const JoinedStroke& stroke : joined_.strokes) {
            if (feetPerPixel < shownBelow(stroke.kind) && overlap(stroke.box, box)) {
                part.strokes.push_back(
                    {.kind = stroke.kind,
                     .name = streets_->names[stroke.name],
                     .points = std::span(joined_.points).subspan(stroke.firstPoint, stroke.points),
                     .oneWay = stroke.oneWay,
                     .closed = stroke.closed});
            }
        }
    }

    void takeHouses(GroundPart& part, const streets::Box& box) const {
        for (const streets::HouseNumber& house : streets_->houses) {
            if (overlap({house.at, house.at}, box)) {
                part.houses.push_back({house.number, house.at});
            }
        }
    }

    std::shared_ptr<const streets::StreetMap> streets_;
    JoinedStrokes joined_;
    std::vector<AreaPlace> areas_;
    streets::Box extent_ = emptyBox();
};

}  // namespace

std::shared_ptr<const Ground> streetGround(std::shared_ptr<const streets::StreetMap> streets,
                                           const std::vector<std::uint32_t>& closed) {
    return std::make_shared<StreetGround>(std::move(streets), closed);
}

}  // namespace map
