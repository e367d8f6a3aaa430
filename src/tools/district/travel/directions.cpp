#include "tools/district/travel/directions.h"

#include <deque>

#include "data/schema/schema.h"
#include "streets/network/gridnetwork.h"

namespace tools::district {

std::vector<streets::DirectionLine> directionsOf(const Run& run) {
    static const auto Grid = streets::gridNetwork({});
    std::deque<streets::Leg> ways;  // the stops point at them
    std::vector<streets::DirectedStop> stops;
    const Stop* here = nullptr;
    for (const Visit& visit : run.visits) {
        const Stop& stop = *visit.stop;
        const bool isReached = stop.placed && here != nullptr;
        if (isReached) {
            ways.push_back(Grid->leg({.at = here->at}, {.at = stop.at}).value_or(streets::Leg()));
        }
        here = stop.placed ? &stop : here;
        stops.push_back({.stopId = stop.stopId,
                         .address = stop.address,
                         .passed = stop.type == data::stoptype::Directional,
                         .students = visit.students,
                         .time = visit.time,
                         .way = isReached ? &ways.back() : nullptr});
    }
    return streets::directionsOf({.pickup = run.pickup,
                                  .miles = run.totalMiles,
                                  .minutes = run.totalMinutes,
                                  .stops = stops},
                                 streets::Wording::Blocks);
}

}  // namespace tools::district
