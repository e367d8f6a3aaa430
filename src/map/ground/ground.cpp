#include "map/ground/ground.h"

#include "map/ground/camera.h"

namespace map {

namespace {

class BareGround : public Ground {
public:
    [[nodiscard]] GroundPart partIn(const streets::Box&, double) const override { return {}; }
    [[nodiscard]] streets::Box extent() const override { return emptyBox(); }
    [[nodiscard]] std::string attribution() const override { return {}; }
    [[nodiscard]] bool hasSides() const override { return false; }
};

}  // namespace

Ground::~Ground() = default;

std::shared_ptr<const Ground> bareGround() { return std::make_shared<BareGround>(); }

}  // namespace map
