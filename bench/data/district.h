#pragma once

#include <string>

namespace bench {

/// The folder with the "routing.mdb" and "trip.mdb" that is measured: the one that the environment
/// variable VIREO_DISTRICT names (the district's own folder or its data folder), otherwise one of
/// 20,000 runs made for this program and removed at its end.
struct District {
    std::string routing;
    std::string trip;
};
[[nodiscard]] const District& district();
/// Removes what was made.
void removeDistrict();

/// The search without criteria, with routing, as the main form puts it together.
[[nodiscard]] const std::string& routingSearch();
/// The same rows in the engine's own dialect.
[[nodiscard]] const std::string& rawRoutingSearch();

}  // namespace bench
