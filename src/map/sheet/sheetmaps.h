#pragma once

#include <memory>
#include <string>

#include "map/ground/ground.h"
#include "platform/ado/connection.h"
#include "reports/base/picture.h"
#include "streets/district/districtstreets.h"

namespace map {

/// Draws runs for their drivers, in light colours. What lies below them is made once, which takes a
/// city longer than a run does.
class SheetMaps {
public:
    SheetMaps(ado::Connection& routing, std::shared_ptr<const streets::DistrictStreets> streets);

    /// The map of a run as it is stored now: its way and its numbered stops. Null where the run is
    /// not there or none of its stops has a place. What it gives may be drawn without the
    /// connection, in a program that has a QGuiApplication. Raises what the connection raises.
    [[nodiscard]] std::shared_ptr<const reports::Drawable> of(const std::string& run) const;

private:
    ado::Connection& routing_;
    std::shared_ptr<const streets::DistrictStreets> streets_;
    std::shared_ptr<const Ground> ground_;
};

}  // namespace map
