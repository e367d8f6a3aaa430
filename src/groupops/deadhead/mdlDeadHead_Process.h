#pragma once

#include <cstdint>

#include "groupops/deadhead/deadheadlegs.h"

/// Dead-head on the session's databases.
namespace groupops {

/// Works out and writes the dead-head of all runs of a route; true when every run got its values.
/// See calculateRoute.
bool Calc_Route_DeadHead(std::int32_t intRouteId, std::int32_t garageStopId);

/// Travel minutes and miles between two stops by their internal ids, both -1 when nothing is found.
/// See readTravel.
[[nodiscard]] Travel Get_DeadHead_Travel(std::int32_t a, std::int32_t b);

}  // namespace groupops
