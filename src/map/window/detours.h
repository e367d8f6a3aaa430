#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "map/ground/ground.h"
#include "map/shown/runscene.h"
#include "streets/district/districtstreets.h"

namespace map {

/// One thing that a run is solved with beside what holds for its district, for as long as it is
/// looked at.
struct DetourStep {
    std::string street = {};                  ///< that is avoided; a corner where the bus may turn
    std::vector<std::uint32_t> avoided = {};  ///< pieces
    std::optional<std::uint32_t> uTurn = {};  ///< node
};

/// What can be asked for at a place of the map.
struct DetourOffer {
    DetourStep street = {};                ///< all of it, but where the run halts
    std::optional<DetourStep> block = {};  ///< this piece; nothing where the run halts there
    DetourStep uTurn = {};                 ///< at the nearer end of the piece
};
/// Nothing where there is no street within so many feet, or streets are none of a map.
[[nodiscard]] std::optional<DetourOffer> detoursAt(const streets::DistrictStreets& streets,
                                                   const RunWay& way, geo::Feet at, double within);

/// Which of the steps are about a place: one of their streets or corners is within so many feet.
[[nodiscard]] std::vector<std::size_t> stepsAt(const streets::DistrictStreets& streets,
                                               const std::vector<DetourStep>& steps, geo::Feet at,
                                               double within);

/// "Avoids Weber Road. U-turn allowed at Weber Road at Neil Avenue."
[[nodiscard]] std::string detourText(const std::vector<DetourStep>& steps);

/// A run with detours: what it is driven on, what is drawn below it, and its way.
struct Detoured {
    std::shared_ptr<const streets::DistrictStreets> streets = {};
    std::shared_ptr<const Ground> ground = {};
    RunWay way = {};
};
/// Takes as long as opening a district's streets does: not for the thread of a form.
[[nodiscard]] Detoured withDetours(const std::shared_ptr<const streets::DistrictStreets>& streets,
                                   const std::vector<DetourStep>& steps, const MappedRun& run);

}  // namespace map
