#include "streets/solve/solve.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmt/format.h>

#include "platform/base/value.h"
#include "streets/solve/halts.h"
#include "streets/solve/timing.h"

namespace streets {

namespace {

constexpr double FeetPerMile = 5280;

double milesOf(double feet) { return std::round(feet / FeetPerMile * 100) / 100; }

bool turnsInDeadEnd(const Leg& way) {
    return std::ranges::any_of(way.stretches, &Stretch::unwanted);
}

class Solver {
public:
    Solver(const Network& network, const RunToSolve& run) : network_(network), run_(run) {}

    Solution solve() {
        solution_.stops.resize(run_.stops.size());
        solution_.sides = network_.hasSides();
        const auto stops = haltsOf(network_, run_, solution_.unserved);
        if (solution_.unserved.empty()) {
            setWays(stops);
        }
        if (!solution_.unserved.empty()) {
            return {.unserved = std::move(solution_.unserved)};
        }
        setTimes(run_, solution_);
        solution_.directions = directionsOf({.pickup = run_.pickup,
                                             .miles = solution_.totalMiles,
                                             .minutes = solution_.totalMinutes,
                                             .stops = directedStops()},
                                            wording());
        return std::move(solution_);
    }

private:
    [[nodiscard]] Wording wording() const {
        return network_.hasSides() ? Wording::Streets : Wording::Blocks;
    }

    void setWays(const std::vector<StopHalts>& stops) {
        auto chosen = chooseHalts(network_, stops);
        if (chosen.notReached) {
            solution_.unserved.push_back(
                {stops[*chosen.notReached].stop, Unserved::Why::NotReachable});
            return;
        }
        for (std::size_t i = 0; i < stops.size(); ++i) {
            SolvedStop& stop = solution_.stops[stops[i].stop];
            stop.halt = chosen.halts[i];
            stop.way = std::move(chosen.ways[i]);
            if (turnsInDeadEnd(stop.way)) {
                solution_.deadEnds.push_back(stops[i].stop);
            }
        }
        setLegs();
    }

    /// A grid takes a bus past its turn points by the way, so that they cost nothing there; along
    /// streets they lead it another way.
    void setLegs() {
        std::optional<Halt> before;
        double seconds = 0;
        double feet = 0;
        for (const std::size_t place : timedAndPassed()) {
            SolvedStop& stop = solution_.stops[place];
            seconds += stop.way.seconds;
            feet += stop.way.feet;
            if (run_.stops[place].passed) {
                continue;
            }
            if (before && !network_.hasSides()) {
                const auto direct =
                    network_.matrix(std::span(&*before, 1), std::span(&*stop.halt, 1));
                seconds = direct.front().seconds;
                feet = direct.front().feet;
            }
            if (before) {
                stop.driveMinutes = base::singleOf(seconds / 60);
                stop.miles = milesOf(feet);
            }
            before = stop.halt;
            seconds = 0;
            feet = 0;
        }
    }

    /// Places of the stops that the bus comes to.
    [[nodiscard]] std::vector<std::size_t> timedAndPassed() const {
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < run_.stops.size(); ++i) {
            if (solution_.stops[i].halt) {
                places.push_back(i);
            }
        }
        return places;
    }

    [[nodiscard]] const std::vector<DirectedStop>& directedStops() {
        for (std::size_t i = 0; i < run_.stops.size(); ++i) {
            const RunStop& stop = run_.stops[i];
            const Leg& way = solution_.stops[i].way;
            directed_.push_back({.stopId = stop.stopId,
                                 .address = stop.address,
                                 .passed = stop.passed,
                                 .students = stop.students,
                                 .time = solution_.stops[i].time,
                                 .way = way.line.empty() ? nullptr : &way});
        }
        return directed_;
    }

    const Network& network_;
    const RunToSolve& run_;
    Solution solution_;
    std::vector<DirectedStop> directed_;
};

}  // namespace

Solution solve(const Network& network, const RunToSolve& run) {
    return Solver(network, run).solve();
}

std::string complaint(const RunStop& stop, Unserved::Why why) {
    constexpr std::array Sentences{
        "has no place on the map.", "is too far from any street that a bus may drive.",
        "cannot be served from its own side: no street there has it on the right of the bus.",
        "cannot be reached from the stop before it."};
    const std::string place = stop.address.empty() ? "" : fmt::format(" ({})", stop.address);
    return fmt::format("The stop {}{} {}", stop.stopId, place,
                       Sentences[static_cast<std::size_t>(why)]);
}

}  // namespace streets
