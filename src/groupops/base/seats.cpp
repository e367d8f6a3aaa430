#include "groupops/base/seats.h"

#include "data/lookups/mdlGetItems.h"
#include "platform/base/text.h"

namespace groupops {

std::optional<std::int64_t> seatsOf(const std::string& vehType, const std::string& level) {
    if (base::trim(vehType).empty()) {
        return std::nullopt;
    }
    const std::string seats = data::GetVehType_Capacity(vehType, level);
    return seats == "NOT FOUND"
               ? std::nullopt
               : std::optional(static_cast<std::int64_t>(base::leadingNumber(seats)));
}

}  // namespace groupops
