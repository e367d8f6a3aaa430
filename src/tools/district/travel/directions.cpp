#include "tools/district/travel/directions.h"

#include <deque>
#include <utility>

#include "data/schema/schema.h"
#include "streets/directions/directions.h"
#include "streets/network/gridnetwork.h"

namespace tools::district {

namespace {

streets::Halt haltAt(Point at) { return {.at = {at.x, at.y}}; }

}  // namespace

std::vector<DirectionLine> directionsOf(const Run& run) {
    static const auto Grid = streets::gridNetwork({});
    std::deque<streets::Leg> ways;  // the stops point at them
    std::vector<streets::DirectedStop> stops;
    const Stop* here = nullptr;
    for (const Visit& visit : run.visits) {
        const Stop& stop = *visit.stop;
        const bool isReached = stop.placed && here != nullptr;
        if (isReached) {
            ways.push_back(Grid->leg(haltAt(here->at), haltAt(stop.at)).value_or(streets::Leg()));
        }
        here = stop.placed ? &stop : here;
        stops.push_back({.stopId = stop.stopId,
                         .address = stop.address,
                         .passed = stop.type == data::stoptype::Directional,
                         .students = visit.students,
                         .time = visit.time,
                         .way = isReached ? &ways.back() : nullptr});
    }
    std::vector<DirectionLine> lines;
    for (auto& line : streets::directionsOf({.pickup = run.pickup,
                      .miles = run.totalMiles,
                      .minutes = run.totalMinutes,
                      .stops = stops},
                                            streets::Wording::Blocks)) {
        lines.push_back({run.visits[line.stop].stop, line.type, std::move(line.text1),
                         std::move(line.text2), std::move(line.shortText),
                         std::move(line.shortDistance)});
    }
    return lines;
}

}  // namespace tools::district
