#include <array>
#include <cmath>

#include <fmt/format.h>

#include "map/ground/camera.h"
#include "map/ground/ground.h"
#include "map/ground/zoomrules.h"

namespace map {

namespace {

using streets::StreetClass;

std::string ordinal(long number) {
    constexpr std::array Endings{"th", "st", "nd", "rd"};
    const long tens = std::abs(number) % 100;
    const long ones = tens % 10;
    const bool isPlain = ones > 3 || (tens >= 11 && tens <= 13);
    return fmt::format("{}{}", number, Endings[static_cast<std::size_t>(isPlain ? 0 : ones)]);
}

long mod(long number, long by) { return ((number % by) + by) % by; }

/// Each fourth street is broader, each twelfth the broadest.
StreetClass classOf(long number) {
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
    [[nodiscard]] long blockOf(double feet) const {
        return std::lround(std::floor(feet / blockFeet_)) + 1;
    }
    [[nodiscard]] double middleOf(long block) const {
        return (static_cast<double>(block) - 0.5) * blockFeet_;
    }

    void takeStreets(GroundPart& part, const streets::Box& box, StreetClass kind) const {
        for (long block = blockOf(box.low.y); block <= blockOf(box.high.y); ++block) {
            if (classOf(block) == kind) {
                const double y = middleOf(block);
                take(part, kind, ordinal(block) + " Street", {{box.low.x, y}, {box.high.x, y}});
            }
        }
    }
    void takeAvenues(GroundPart& part, const streets::Box& box, StreetClass kind) const {
        for (long block = blockOf(box.low.x); block <= blockOf(box.high.x); ++block) {
            if (classOf(block) == kind) {
                const double x = middleOf(block);
                take(part, kind, ordinal(block) + " Avenue", {{x, box.low.y}, {x, box.high.y}});
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
