#include "map/drawing/scene.h"

#include "map/ground/camera.h"

namespace map {

namespace {

void stretch(streets::Box& box, const std::vector<geo::Feet>& line) {
    for (const geo::Feet place : line) {
        map::stretch(box, place);
    }
}

}  // namespace

streets::Box extentOf(const Scene& scene) {
    streets::Box box = emptyBox();
    for (const DrawnRun& run : scene.runs) {
        for (const DrawnLeg& leg : run.legs) {
            stretch(box, leg.line);
        }
        for (const DrawnStop& stop : run.stops) {
            map::stretch(box, stop.at);
        }
    }
    for (const DrawnPlace& place : scene.places) {
        map::stretch(box, place.at);
    }
    for (const auto& line : scene.oldWay) {
        stretch(box, line);
    }
    return box;
}

}  // namespace map
