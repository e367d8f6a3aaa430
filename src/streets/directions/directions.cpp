#include "streets/directions/directions.h"

namespace streets {

std::vector<DirectionLine> directionsOf(const DirectedRun&, Wording) { return {}; }

}  // namespace streets
