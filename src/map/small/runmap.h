#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "map/drawing/scene.h"
#include "map/ground/ground.h"
#include "platform/ado/connection.h"
#include "platform/base/notcopied.h"
#include "streets/district/districtstreets.h"

namespace map {

/// A run's small map, or the reason why there is none.
struct RunMap {
    std::shared_ptr<const Ground> ground = {};
    Scene scene = {};
    std::vector<std::int64_t> stopTripIds = {};  ///< of the scene's stops, in their order
    std::string told = {};                       ///< for those who do not see the map
    std::string reason = {};                     ///< empty where there is a map
    bool isOpening = false;                      ///< the reason will pass by itself
};

/// Draws runs of one district. Its streets are opened by a thread of its own when the first run is
/// drawn, and again when the settings that name them or the list of closed streets have changed.
/// Those that another one has open are taken from there.
class RunMaps : private base::NotCopied {
public:
    /// `opened` is called by the other thread when a run that had to wait can be drawn, or is told
    /// why not.
    explicit RunMaps(std::function<void()> opened = {});
    ~RunMaps();

    /// The run as it is stored now, on today's streets: its way and its numbered stops. Streets
    /// that cannot be read are a reason, too, and so are those that take longer than a blink to
    /// be opened. Raises what the connection raises.
    [[nodiscard]] RunMap mapOf(ado::Connection& routing, const std::string& run,
                               const streets::StreetPlaces& places);

private:
    struct Opening;

    void open(const streets::StreetPlaces& places);

    std::function<void()> opened_;
    std::shared_ptr<Opening> opening_;
};

}  // namespace map
