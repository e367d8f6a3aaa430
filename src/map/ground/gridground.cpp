#include <cmath>

#include "map/ground/camera.h"
#include "map/ground/ground.h"
#include "map/ground/zoomrules.h"
#include "streets/network/gridnetwork.h"

namespace map {

namespace {

using streets::StreetClass;

int mod(int number, int by) { return ((number % by) + by) % by; }

/// Each fourth street is broader, each twelfth the broadest.
StreetClass classOf(int number) {
    if (mod(number, 12) == 1) {
        return StreetClass::Primary;
    }
    return mod(number, 4) == 1 ? StreetClass::Secondary : StreetClass::Residential;
}

class GridGround : public Ground {
public:
    explicit GridGround(double blockFeet) : blockFeet_(blockFeet) {}

    [[nodiscard]] GroundPart partIn(const streets::Box& box, double feetPerPixel) const override {
        GroundPart part;
        for (const auto kind :
             {StreetClass::Residential, StreetClass::Secondary, StreetClass::Primary}) {
            if (feetPerPixel < shownBelow(kind)) {
                takeStreets(part, box, kind);
                takeAvenues(part, box, kind);
            }
        }
        return part;
    }
    [[nodiscard]] streets::Box extent() const override { return emptyBox(); }
    [[nodiscard]] std::string attribution() const override { return {}; }
    [[nodiscard]] bool hasSides() const override { return false; }

private:
    [[nodiscard]] int blockOf(double feet) const {
        return static_cast<int>(std::floor(feet / blockFeet_)) + 1;
    }
    [[nodiscard]] double middleOf(int block) const { return (block - 0.5) * blockFeet_; }

    /// Nothing is called "-3rd".
    static std::string nameOf(int block, std::string name) {
        return block < 1 ? std::string() : std::move(name);
    }

    void takeStreets(GroundPart& part, const streets::Box& box, StreetClass kind) const {
        const int last = blockOf(box.high.y);
        for (int block = blockOf(box.low.y); block <= last; ++block) {
            if (classOf(block) == kind) {
                const double y = middleOf(block);
                take(part, kind, nameOf(block, streets::gridStreet(y, blockFeet_)),
                     {{box.low.x, y}, {box.high.x, y}});
            }
        }
    }
    void takeAvenues(GroundPart& part, const streets::Box& box, StreetClass kind) const {
        const int last = blockOf(box.high.x);
        for (int block = blockOf(box.low.x); block <= last; ++block) {
            if (classOf(block) == kind) {
                const double x = middleOf(block);
                take(part, kind, nameOf(block, streets::gridAvenue(x, blockFeet_)),
                     {{x, box.low.y}, {x, box.high.y}});
            }
        }
    }
    static void take(GroundPart& part, StreetClass kind, std::string name,
                     std::vector<geo::Feet> line) {
        part.strokes.push_back({.kind = kind,
                                .name = part.madeNames.emplace_back(std::move(name)),
                                .points = part.madePoints.emplace_back(std::move(line))});
    }

    double blockFeet_;
};

}  // namespace

std::shared_ptr<const Ground> gridGround(double blockFeet) {
    return std::make_shared<GridGround>(blockFeet);
}

}  // namespace map
