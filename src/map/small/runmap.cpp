#include "map/small/runmap.h"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "map/shown/districtground.h"
#include "map/shown/mappedrun.h"
#include "map/shown/runscene.h"
#include "platform/base/error.h"

namespace map {

namespace {

constexpr auto NotThere = "The run is not there any more.";
constexpr auto NoPlaces = "None of the stops has a place on the map yet.";

/// Changes whenever what is opened may have changed.
std::string stateOf(const streets::StreetPlaces& places) {
    std::error_code none;  // a file that is not there has no time, and is found out by opening
    const auto changed = std::filesystem::last_write_time(places.settings, none);
    return fmt::format("{}\n{}\n{}", places.settings, changed.time_since_epoch().count(),
                       places.closed);
}

std::size_t placedStops(const MappedRun& run) {
    return static_cast<std::size_t>(std::ranges::count_if(run.stops, &MappedStop::isPlaced));
}

std::string toldOf(const MappedRun& run) {
    const std::size_t unplaced = run.stops.size() - placedStops(run);
    const std::string way =
        fmt::format("{}: {} stops in driving order", headingOf(run), run.numberedStops());
    return unplaced == 0 ? way : fmt::format("{}, {} without a place", way, unplaced);
}

}  // namespace

void RunMaps::open(const streets::StreetPlaces& places) {
    const std::string state = stateOf(places);
    if (state != opened_) {
        streets_ = streets::openStreets(places);
        ground_ = groundOf(streets_);
        opened_ = state;
    }
}

RunMap RunMaps::mapOf(ado::Connection& routing, const std::string& run,
                      const streets::StreetPlaces& places) {
    const auto mapped = readMappedRun(routing, run);
    if (!mapped) {
        return {.reason = NotThere};
    }
    if (placedStops(*mapped) == 0) {
        return {.reason = NoPlaces};
    }
    try {
        open(places);
    } catch (const base::RunTimeError& error) {
        return {.reason = error.what()};
    }
    const ShownRun shown{.run = *mapped, .way = wayOf(streets_->network(), *mapped)};
    RunMap map{.ground = ground_, .scene = sceneOf(shown, NoStop), .told = toldOf(*mapped)};
    for (DrawnPlace& place : map.scene.places) {
        place.name.clear();  // the sign says it, and a name takes half of a small map
    }
    return map;
}

}  // namespace map
