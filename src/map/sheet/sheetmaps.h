#pragma once

#include <memory>
#include <string>

#include "platform/ado/connection.h"
#include "reports/base/picture.h"
#include "streets/district/districtstreets.h"

namespace map {

/// The map of a run for its driver, as it is stored now: its way and its numbered stops, in light
/// colours. Null where the run is not there or none of its stops has a place. What it gives may
/// be drawn without the connection, in a program that has a QGuiApplication. Raises what the
/// connection raises.
[[nodiscard]] std::shared_ptr<const reports::Drawable> sheetMapOf(
    ado::Connection& routing, const std::shared_ptr<const streets::DistrictStreets>& streets,
    const std::string& run);

}  // namespace map
