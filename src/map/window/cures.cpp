#include "map/window/cures.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

#include <fmt/format.h>

#include "map/shown/deadends.h"
#include "map/shown/troubles.h"
#include "streets/order/order.h"

namespace map {

namespace {

using Kind = Trouble::Kind;

constexpr double SecondsPerMinute = 60;

/// "makes the run 0.2 minutes longer".
std::string costText(double minutesMore) {
    return std::abs(minutesMore) < 0.05
               ? "makes the run no longer"
               : fmt::format("makes the run {:.1f} minutes {}", std::abs(minutesMore),
                             minutesMore > 0 ? "longer" : "shorter");
}

/// What curing each of a run's troubles comes to; what the run as a whole needs is found out once.
class Cures {
public:
    Cures(const streets::Network& network, const ShownRun& shown, double rideMinutes)
        : network_(network),
          shown_(shown),
          told_(runToSolve(shown.run)),
          rideMinutes_(rideMinutes) {}

    std::string of(const Trouble& trouble) {
        switch (trouble.kind) {
            case Kind::Crossing:
                return ofCrossing(trouble.stop);
            case Kind::DeadEnd:
                return ofDeadEnd(trouble.stop);
            case Kind::Finding:
                return shown_.way.isKnown() ? ofFinding(trouble) : "";
            case Kind::Unserved:
                break;
        }
        return "";
    }

private:
    /// Minutes more than today; nothing where the run cannot be solved so.
    [[nodiscard]] std::optional<double> minutesMore(const streets::RunToSolve& run) const {
        const auto solved = streets::solve(network_, run);
        return solved.unserved.empty()
                   ? std::optional(solved.totalMinutes - shown_.way.solution.totalMinutes)
                   : std::nullopt;
    }

    [[nodiscard]] std::string ofCrossing(std::size_t stop) const {
        auto run = told_;
        run.stops[stop].side = streets::DoorSide::Right;
        const auto& today = shown_.way.solution;
        const auto solved = streets::solve(network_, run);
        if (!shown_.way.isKnown() || !solved.unserved.empty()) {
            return "No way leads there with the stop on the right of the bus.";
        }
        return fmt::format("Serving it from its own side {}{}.",
                           costText(solved.totalMinutes - today.totalMinutes),
                           solved.deadEnds.size() > today.deadEnds.size()
                               ? ", but the bus would turn in a dead end"
                               : "");
    }

    [[nodiscard]] std::string ofDeadEnd(std::size_t stop) const {
        for (const auto before : shown_.way.solution.deadEnds) {
            const auto found = deadEndBefore(shown_.way, before);
            if (found && found->stop == stop && found->mouth) {
                return atMouth(stop, *found->mouth);
            }
        }
        return "";
    }

    [[nodiscard]] std::string atMouth(std::size_t stop, geo::Feet mouth) const {
        auto run = told_;
        const auto from = run.stops[stop].at;
        run.stops[stop].at = mouth;
        const auto solved = streets::solve(network_, run);
        const bool isCured =
            solved.unserved.empty() && solved.deadEnds.size() < shown_.way.solution.deadEnds.size();
        const double feet = std::hypot(mouth.x - from.x, mouth.y - from.y);
        return isCured
                   ? fmt::format("Serving it at the corner, {:.0f} feet away, {}.",
                                 std::round(feet / 50) * 50,
                                 costText(solved.totalMinutes - shown_.way.solution.totalMinutes))
                   : "";
    }

    std::string ofFinding(const Trouble& trouble) {
        if (trouble.brief == "PASSENGERS") {
            return once(seats_, [this] { return ofSeats(); });
        }
        if (trouble.brief == "RIDETIME") {
            return once(ride_, [this] { return ofRideTime(); });
        }
        if (trouble.brief == "EARLY BELL" || trouble.brief == "LATE BELL") {
            return ofBell(trouble.stop);
        }
        const bool isCured = (trouble.brief == "RIGHTSIDE" && shown_.way.sides) ||
                             (trouble.brief == "CONFLICTING TIME" && timesAscend());
        return isCured ? ofSolving() : "";
    }

    [[nodiscard]] bool timesAscend() const {
        std::optional<base::Date> before;
        for (const auto& stop : shown_.way.solution.stops) {
            if (before && stop.time && stop.time->seconds <= before->seconds) {
                return false;
            }
            before = stop.time ? stop.time : before;
        }
        return true;
    }

    [[nodiscard]] std::string ofSolving() const {
        return fmt::format("Solve Run cures it and {}.",
                           costText(shown_.way.solution.totalMinutes - shown_.run.minutes));
    }

    template <class Find>
    static std::string once(std::optional<std::string>& found, Find find) {
        if (!found) {
            found = find();
        }
        return *found;
    }

    /// The stop with the fewest students without whom all have a seat.
    [[nodiscard]] std::string ofSeats() const {
        const int tooMany = shown_.run.passengers() - shown_.run.seats.value_or(0);
        if (!shown_.run.seats || tooMany <= 0) {
            return "";
        }
        const auto& stops = shown_.run.stops;
        std::size_t least = NoStop;
        for (std::size_t i = 0; i < stops.size(); ++i) {
            const bool isEnough = stops[i].kind == StopKind::Stop && stops[i].students >= tooMany;
            if (isEnough && (least == NoStop || stops[i].students < stops[least].students)) {
                least = i;
            }
        }
        return least == NoStop
                   ? fmt::format("{} have no seat: more than one stop has to go.", tooMany)
                   : withoutStop(least);
    }

    [[nodiscard]] std::string withoutStop(std::size_t stop) const {
        auto run = told_;
        run.stops.erase(run.stops.begin() + static_cast<std::ptrdiff_t>(stop));
        const auto more = minutesMore(run);
        return more ? fmt::format("Without stop {} ({}) all have a seat, which {}.",
                                  shown_.run.numberOf(stop), shown_.run.stops[stop].name,
                                  costText(*more))
                    : "";
    }

    [[nodiscard]] std::string ofRideTime() const {
        std::vector<bool> fixed;
        std::ranges::transform(shown_.run.stops, std::back_inserter(fixed), isFixed);
        const int seats = shown_.run.seats.value_or(0);
        const auto found = streets::suggestOrder(
            network_, told_, fixed,
            {.seats = shown_.run.passengers() > seats ? 0 : seats, .rideMinutes = rideMinutes_});
        if (!found.unserved.empty() || rideMinutes_ <= 0) {
            return "";
        }
        if (!found.keepsLimits) {
            return found.isBest ? "No order of the stops keeps the limit."
                                : "No order of the stops was found that keeps the limit.";
        }
        if (std::ranges::is_sorted(found.suggested.stops)) {
            return ofSolving();
        }
        return fmt::format("Another order of the stops (More, Suggest an Order) keeps it and {}.",
                           costText(found.suggested.minutes - found.today.minutes));
    }

    [[nodiscard]] std::string ofBell(std::size_t stop) const {
        const auto& bell = shown_.run.bell;
        if (stop == NoStop || !bell || !shown_.run.stops[stop].time) {
            return "";
        }
        const auto seconds =
            static_cast<double>(shown_.run.stops[stop].time->seconds - bell->seconds);
        const auto minutes = std::ceil(std::abs(seconds) / SecondsPerMinute);
        return fmt::format("Driving the run {:.0f} minute{} {} cures it and makes it no longer.",
                           minutes, minutes == 1 ? "" : "s", seconds > 0 ? "earlier" : "later");
    }

    const streets::Network& network_;
    const ShownRun& shown_;
    streets::RunToSolve told_;
    double rideMinutes_;
    std::optional<std::string> seats_;
    std::optional<std::string> ride_;
};

}  // namespace

std::vector<std::string> curesOf(const streets::Network& network, const ShownRun& shown,
                                 double rideMinutes, const std::stop_token& stop) {
    Cures cures(network, shown, rideMinutes);
    std::vector<std::string> sentences;
    for (const auto& trouble : shown.way.troubles) {
        if (stop.stop_requested()) {
            break;
        }
        sentences.push_back(cures.of(trouble));
    }
    return sentences;
}

}  // namespace map
