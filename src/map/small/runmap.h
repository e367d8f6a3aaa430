#pragma once

#include <memory>
#include <string>

#include "map/drawing/scene.h"
#include "map/ground/ground.h"
#include "platform/ado/connection.h"
#include "streets/district/districtstreets.h"

namespace map {

/// A run's small map, or the reason why there is none.
struct RunMap {
    std::shared_ptr<const Ground> ground = {};
    Scene scene = {};
    std::string told = {};    ///< for those who do not see the map
    std::string reason = {};  ///< empty where there is a map
};

/// Draws runs of one district. Its streets are opened when the first run is drawn, and again when
/// the settings that name them have changed.
class RunMaps {
public:
    /// The run as it is stored now, on today's streets: its way and its numbered stops. Streets
    /// that cannot be read are a reason, too. Raises what the connection raises.
    [[nodiscard]] RunMap mapOf(ado::Connection& routing, const std::string& run,
                               const streets::StreetPlaces& places);

private:
    void open(const streets::StreetPlaces& places);

    std::string opened_;  ///< which settings, of when, and which list of closed streets
    std::shared_ptr<const streets::DistrictStreets> streets_;
    std::shared_ptr<const Ground> ground_;
};

}  // namespace map
