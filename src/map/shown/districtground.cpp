#include "map/shown/districtground.h"

namespace map {

std::shared_ptr<const Ground> groundOf(
    const std::shared_ptr<const streets::DistrictStreets>& streets) {
    if (streets == nullptr) {
        return bareGround();
    }
    if (streets->grid()) {
        return gridGround(streets->grid()->blockFeet);
    }
    // The map lives as long as what it belongs to.
    return streetGround({streets, streets->map()}, streets->closed());
}

}  // namespace map
