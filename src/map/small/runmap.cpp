#include "map/small/runmap.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <filesystem>
#include <mutex>
#include <thread>
#include <utility>

#include <fmt/format.h>

#include "map/shown/districtground.h"
#include "map/shown/mappedrun.h"
#include "map/shown/runscene.h"

namespace map {

namespace {

constexpr auto NotThere = "The run is not there any more.";
constexpr auto NoPlaces = "None of the stops has a place on the map yet.";
constexpr auto StillOpening = "The streets are being opened.";
/// Short enough to be no wait, long enough for a town.
constexpr std::chrono::milliseconds Blink(40);

/// Changes whenever what is opened may have changed; making streets writes the settings, too.
std::string stateOf(const streets::StreetPlaces& places) {
    std::string state;
    for (const std::string& file : {places.settings, places.closed}) {
        std::error_code none;  // a file that is not there has no time, and is found out by opening
        const auto changed = std::filesystem::last_write_time(file, none);
        state += fmt::format("{}\n{}\n", file, changed.time_since_epoch().count());
    }
    return state;
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

/// Shared with the thread that opens, which may outlive who asked.
struct RunMaps::Opening {
    static std::shared_ptr<Opening> of(const streets::StreetPlaces& places);
    static void run(const std::shared_ptr<Opening>& opening, const streets::StreetPlaces& places);

    /// Whether it comes to its end within a blink; who was told no is called at the end.
    bool waitFor(const RunMaps* who, const std::function<void()>& opened);
    void forget(const RunMaps* who);

    std::string state;
    std::mutex mutex;
    std::condition_variable ended;
    bool isDone = false;
    std::string reason;
    std::shared_ptr<const streets::DistrictStreets> streets;
    std::shared_ptr<const Ground> ground;
    std::vector<std::pair<const RunMaps*, std::function<void()>>> waiting;
};

void RunMaps::Opening::run(const std::shared_ptr<Opening>& opening,
                           const streets::StreetPlaces& places) {
    std::string reason;
    std::shared_ptr<const streets::DistrictStreets> streets;
    std::shared_ptr<const Ground> ground;
    try {
        streets = streets::openStreets(places);
        ground = groundOf(streets);
    } catch (const std::exception& fault) {
        reason = fault.what();
    }
    const std::scoped_lock lock(opening->mutex);
    opening->reason = std::move(reason);
    opening->streets = std::move(streets);
    opening->ground = std::move(ground);
    opening->isDone = true;
    opening->ended.notify_all();
    for (const auto& [who, opened] : std::exchange(opening->waiting, {})) {
        opened();
    }
}

/// One that somebody still holds, or a new one.
std::shared_ptr<RunMaps::Opening> RunMaps::Opening::of(const streets::StreetPlaces& places) {
    static std::weak_ptr<Opening> last;  // of the forms' thread
    const std::string state = stateOf(places);
    auto opening = last.lock();
    if (!opening || opening->state != state) {
        opening = std::make_shared<Opening>();
        opening->state = state;
        last = opening;
        std::thread([opening, places] { run(opening, places); }).detach();
    }
    return opening;
}

bool RunMaps::Opening::waitFor(const RunMaps* who, const std::function<void()>& opened) {
    std::unique_lock lock(mutex);
    const bool isNew =
        std::ranges::find(waiting, who, [](const auto& one) { return one.first; }) == waiting.end();
    if (!isNew || ended.wait_for(lock, Blink, [this] { return isDone; })) {
        return isDone;
    }
    if (opened) {
        waiting.emplace_back(who, opened);
    }
    return false;
}

void RunMaps::Opening::forget(const RunMaps* who) {
    const std::scoped_lock lock(mutex);
    std::erase_if(waiting, [who](const auto& one) { return one.first == who; });
}

RunMaps::RunMaps(std::function<void()> opened) : opened_(std::move(opened)) {}

RunMaps::~RunMaps() {
    if (opening_) {
        opening_->forget(this);
    }
}

void RunMaps::open(const streets::StreetPlaces& places) {
    auto opening = Opening::of(places);
    if (opening_ && opening_ != opening) {
        opening_->forget(this);
    }
    opening_ = std::move(opening);
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
    open(places);
    if (!opening_->waitFor(this, opened_)) {
        return {.reason = StillOpening, .isOpening = true};
    }
    if (!opening_->reason.empty()) {
        return {.reason = std::exchange(opening_, {})->reason};  // the next time it may be well
    }
    const ShownRun shown{.run = *mapped, .way = wayOf(opening_->streets->network(), *mapped)};
    RunMap map{
        .ground = opening_->ground, .scene = sceneOf(shown, NoStop), .told = toldOf(*mapped)};
    for (DrawnPlace& place : map.scene.places) {
        place.name.clear();  // the sign says it, and a name takes half of a small map
    }
    for (const MappedStop& stop : mapped->stops) {
        if (isDrawn(stop)) {
            map.stopTripIds.push_back(stop.stopTripId);
        }
    }
    return map;
}

}  // namespace map
