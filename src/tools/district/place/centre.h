#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/geo/projection.h"
#include "tools/district/base/folders.h"

namespace tools::district {

/// Where a district's plane of feet touches the earth: "Centre=latitude,longitude,x,y" in the
/// section [District] of its settings, in degrees and feet. It is kept for good: with another one
/// every stop would lie elsewhere. Nothing where the district keeps none; raises base::RunTimeError
/// for one that cannot be.
[[nodiscard]] std::optional<geo::Centre> keptCentre(const Folders& folders);

/// Writes a line of the section [District] into the settings. Raises base::RunTimeError.
void keepSetting(const Folders& folders, std::string_view key, std::string_view value);

/// The same for the centre.
void keepCentre(const Folders& folders, const geo::Centre& centre);

/// The kept centre, else the given degrees at the middle of the district's stops. Raises
/// base::RunTimeError where both are there and differ, or neither is.
[[nodiscard]] geo::Centre centreFor(const Folders& folders,
                                    const std::optional<geo::Degrees>& given,
                                    const std::function<geo::Feet()>& middle);

/// "41.8818,-87.6232"; nothing for any other text and for what is nowhere on the earth.
[[nodiscard]] std::optional<geo::Degrees> degreesFrom(std::string_view text);

/// The text of a settings file with another value, or one more.
[[nodiscard]] std::string withSetting(std::string_view settings, std::string_view section,
                                      std::string_view key, std::string_view value);

}  // namespace tools::district
