#include "map/window/placing.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

#include <fmt/format.h>

#include "map/run/solvedrun.h"
#include "map/shown/comparison.h"
#include "map/window/spots.h"

namespace map {

namespace {

constexpr std::size_t MostCandidates = 6;

std::string letterOf(std::size_t candidate) {
    return {static_cast<char>('A' + static_cast<char>(candidate))};
}

MappedRun placedOf(const MappedRun& run) {
    MappedRun placed = run;
    std::erase_if(placed.stops, [](const MappedStop& one) { return !one.isPlaced; });
    return placed;
}

MappedRun restOf(const MappedRun& run, std::size_t stop) {
    MappedRun rest = run;
    rest.stops.erase(rest.stops.begin() + static_cast<std::ptrdiff_t>(stop));
    return placedOf(rest);
}

/// Students get off at a school or come from one, which stands behind the stop or before it; a turn
/// point stays before the stop that it leads to, and a garage at its end of the run.
bool mayStandBefore(const MappedRun& rest, std::size_t place) {
    const auto is = [](StopKind kind) {
        return [kind](const MappedStop& stop) { return stop.kind == kind; };
    };
    const auto at = rest.stops.begin() + static_cast<std::ptrdiff_t>(place);
    const auto end = rest.stops.end();
    const bool beforeGarage = at == rest.stops.begin() && at != end && is(StopKind::Garage)(*at);
    const bool behindGarage = at == end && place > 0 && is(StopKind::Garage)(rest.stops.back());
    const bool behindTurnPoint = place > 0 && is(StopKind::TurnPoint)(rest.stops[place - 1]);
    const bool isServed = rest.isPickup ? std::any_of(at, end, is(StopKind::School))
                                        : std::any_of(rest.stops.begin(), at, is(StopKind::School));
    const bool hasSchool = std::ranges::any_of(rest.stops, is(StopKind::School));
    return !beforeGarage && !behindGarage && !behindTurnPoint && (isServed || !hasSchool);
}

/// "Stops 1 to 6: 0.6 minutes earlier"; blank where nothing changes.
std::string shiftText(const std::string& stops, double minutes) {
    return stops.empty() || std::abs(minutes) < 0.05
               ? ""
               : fmt::format("{}: {:.1f} minutes {}", stops, std::abs(minutes),
                             minutes > 0 ? "later" : "earlier");
}

std::string stopsText(int first, int last) {
    return last < first    ? ""
           : first == last ? fmt::format("Stop {}", first)
                           : fmt::format("Stops {} to {}", first, last);
}

std::string insteadText(std::string_view what, base::Date now, base::Date before) {
    const auto text = now.hhmm();
    return fmt::format("{} {}{}", what, text,
                       text == before.hhmm() ? ", as before" : " instead of " + before.hhmm());
}

/// Finds where in a run a stop costs the least.
class Placing {
public:
    Placing(const streets::Network& network, const MappedRun& run, std::size_t stop)
        : network_(network),
          run_(run),
          stop_(stop),
          rest_(restOf(run, stop)),
          today_(streets::solve(network, runToSolve(rest_))) {
        std::ranges::transform(
            today_.stops, std::back_inserter(halts_),
            [](const streets::SolvedStop& one) { return one.halt.value_or(streets::Halt()); });
    }

    /// There is a run to put it into.
    [[nodiscard]] bool isPossible() const { return today_.unserved.empty(); }

    [[nodiscard]] std::optional<Candidate> at(const Spot& spot) const {
        const auto side =
            network_.hasSides() ? streets::DoorSide::Right : streets::DoorSide::Either;
        const auto halts = network_.haltsAt(spot.at, side);
        if (halts.empty()) {
            return std::nullopt;
        }
        Candidate found{.name = spot.name, .at = spot.at, .crossed = spot.crossed};
        found.stop = putBefore(bestPlace(halts.front()), spot.at, found.shown.run);
        found.shown.way = wayOf(network_, found.shown.run);
        const auto solved = found.shown.way.isKnown()
                                ? found.shown.way.solution
                                : streets::solve(network_, runToSolve(placedOf(found.shown.run)));
        if (!solved.unserved.empty()) {
            return std::nullopt;
        }
        found.minutesMore = solved.totalMinutes - today_.totalMinutes;
        found.side = sideOf(found.shown.run.stops[found.stop],
                            found.shown.way.drawn[found.stop].halt, network_.hasSides());
        found.effects = effectsOf(found, solved);
        return found;
    }

private:
    /// Before which stop of the rest, or behind the last one.
    [[nodiscard]] std::size_t bestPlace(const streets::Halt& halt) const {
        const auto in = network_.matrix(halts_, std::span(&halt, 1));
        const auto out = network_.matrix(std::span(&halt, 1), halts_);
        std::size_t best = rest_.stops.size();
        double least = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i <= rest_.stops.size(); ++i) {
            const double cost = costBefore(i, in, out);
            if (mayStandBefore(rest_, i) && cost < least) {
                least = cost;
                best = i;
            }
        }
        return best;
    }

    [[nodiscard]] double costBefore(std::size_t place, const std::vector<streets::Travel>& in,
                                    const std::vector<streets::Travel>& out) const {
        const auto secondsOf = [](const auto& way) { return way.seconds + way.reluctance; };
        const bool hasBefore = place > 0;
        const bool hasBehind = place < rest_.stops.size();
        return (hasBefore ? secondsOf(in[place - 1]) : 0) +
               (hasBehind ? secondsOf(out[place]) : 0) -
               (hasBefore && hasBehind ? secondsOf(today_.stops[place].way) : 0);
    }

    /// Sets the run with the stop there; answers with its place among all stops.
    std::size_t putBefore(std::size_t place, geo::Feet at, MappedRun& changed) const {
        changed = withStopAt(run_, stop_, at);
        auto moved = changed.stops[stop_];
        moved.wantsRightSide = moved.wantsRightSide || network_.hasSides();
        changed.stops.erase(changed.stops.begin() + static_cast<std::ptrdiff_t>(stop_));
        const auto before = place < rest_.stops.size()
                                ? std::ranges::find(changed.stops, rest_.stops[place].stopTripId,
                                                    &MappedStop::stopTripId)
                                : changed.stops.end();
        return static_cast<std::size_t>(changed.stops.insert(before, std::move(moved)) -
                                        changed.stops.begin());
    }

    [[nodiscard]] std::vector<std::string> effectsOf(const Candidate& found,
                                                     const streets::Solution& solved) const {
        const auto placed = placedOf(found.shown.run);
        const auto own = static_cast<std::size_t>(
            std::ranges::find(placed.stops, run_.stops[stop_].stopTripId, &MappedStop::stopTripId) -
            placed.stops.begin());
        const int number = found.shown.run.numberOf(found.stop);
        const int last = found.shown.run.numberedStops();
        std::vector<std::string> lines{
            insteadText("Run starts", solved.start, today_.start),
            shiftText(stopsText(1, number - 1), own > 0 ? shift(solved, own - 1, own - 1) : 0),
            shiftText(stopsText(number + 1, last),
                      own < rest_.stops.size() ? shift(solved, own + 1, own) : 0),
            fmt::format("Passengers {}{}", run_.passengers(),
                        run_.seats ? fmt::format(" of {} seats", *run_.seats) : ""),
            insteadText("Arrival", solved.end, today_.end)};
        std::erase(lines, "");
        return lines;
    }

    /// Minutes that a stop is later than without the new one.
    [[nodiscard]] double shift(const streets::Solution& solved, std::size_t now,
                               std::size_t before) const {
        const auto& after = solved.stops[now].time;
        const auto& today = today_.stops[before].time;
        return after && today ? static_cast<double>(after->seconds - today->seconds) / 60 : 0;
    }

    const streets::Network& network_;
    const MappedRun& run_;
    std::size_t stop_;
    MappedRun rest_;
    streets::Solution today_;
    std::vector<streets::Halt> halts_;
};

/// Another place on the same side of the same corner says nothing new.
bool isAlike(const Candidate& one, const Candidate& other) {
    return one.name == other.name && one.side == other.side && one.stop == other.stop;
}

/// "after stop 6, south side; they cross High Street".
std::string whereText(const Candidate& one) {
    const int number = one.shown.run.numberOf(one.stop);
    return fmt::format("{}{}{}{}",
                       number == 1 ? "first stop" : fmt::format("after stop {}", number - 1),
                       one.side.empty() ? "" : ", door on the " + one.side,
                       one.crossed.empty() ? "" : "; they cross ", one.crossed);
}

}  // namespace

std::optional<Pointed> pointedAt(const streets::Network& network, const MappedRun& run,
                                 std::size_t stop, geo::Feet at) {
    Pointed pointed{.shown = {.run = withStopAt(run, stop, at)}};
    pointed.shown.way = wayOf(network, pointed.shown.run);
    if (!pointed.shown.way.isKnown()) {
        return std::nullopt;
    }
    const auto& halt = pointed.shown.way.solution.stops[stop].halt;
    pointed.corner = halt ? network.cornerAt(*halt) : "";
    return pointed;
}

std::vector<Candidate> candidatesFor(const streets::DistrictStreets& streets, const MappedRun& run,
                                     std::size_t stop, std::string_view words,
                                     const std::stop_token& given) {
    std::vector<Candidate> found;
    const Placing placing(streets.network(), run, stop);
    if (!placing.isPossible()) {
        return found;
    }
    for (const auto& spot : spotsFor(streets, words, MostCandidates)) {
        auto one = given.stop_requested() ? std::nullopt : placing.at(spot);
        if (one && std::ranges::none_of(
                       found, [&](const Candidate& other) { return isAlike(*one, other); })) {
            found.push_back(*std::move(one));
        }
    }
    std::ranges::stable_sort(found, {}, &Candidate::minutesMore);
    found.resize(std::min(found.size(), MostCandidates));
    return found;
}

Panel candidatesPanelOf(const MappedRun& run, std::size_t stop,
                        const std::vector<Candidate>& candidates) {
    const auto& wanted = run.stops[stop];
    Panel panel{.heading = fmt::format("A place for stop {}", run.numberOf(stop)),
                .subject = headingOf(run),
                .totals = fmt::format("“{}”, {} students", wanted.name, wanted.students),
                .columns = {"Places found", {"", "Minutes", ""}, 1}};
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto& one = candidates[i];
        PanelRow row;
        row.mark = PanelRow::Mark::Candidate;
        row.number = letterOf(i);
        row.title = one.name;
        row.detail = whereText(one);
        row.cells[1] = signedMinutes(one.minutesMore);
        row.spoken =
            fmt::format("{}, {}, {} minutes, {}", row.number, row.title, row.cells[1], row.detail);
        row.index = i;
        panel.rows.push_back(std::move(row));
    }
    return panel;
}

/// What stays as it is becomes pale.
Scene candidatesScene(const std::vector<Candidate>& candidates, std::size_t chosen) {
    const auto& one = candidates[chosen];
    Scene scene = sceneOf(one.shown, NoStop);
    auto& run = scene.runs.front();
    auto leg = run.legs.begin();
    bool isBehind = false;  // the leg that leads on from the stop
    for (std::size_t i = 0; i < one.shown.way.drawn.size(); ++i) {
        const bool isDriven = one.shown.way.drawn[i].way.line.size() > 1;
        if (isDriven) {
            leg->isPale = i != one.stop && !isBehind;
            leg->plate.clear();
            ++leg;
        }
        isBehind = i == one.stop || (isBehind && !isDriven);
    }
    std::erase_if(run.stops, [&](const DrawnStop& drawn) {
        return drawn.at.x == one.at.x && drawn.at.y == one.at.y;
    });
    for (auto& drawn : run.stops) {
        drawn.isPale = true;
    }
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        const auto& halt = candidates[i].shown.way.drawn[candidates[i].stop].halt;
        DrawnStop drawn;
        drawn.at = candidates[i].at;
        drawn.onStreet = halt ? std::optional(halt->at) : std::nullopt;
        drawn.number = letterOf(i);
        drawn.plate = signedMinutes(candidates[i].minutesMore) + " min";
        drawn.look = StopLook::Candidate;
        drawn.isChosen = i == chosen;
        run.stops.push_back(std::move(drawn));
    }
    return scene;
}

}  // namespace map
