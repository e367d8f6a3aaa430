#pragma once

#include <span>
#include <vector>

#include "runsearch/schedule/plan.h"

namespace schedule {

/// From its start up to, not including, its end.
struct Interval {
    Seconds start = 0;
    Seconds end = 0;

    [[nodiscard]] Seconds length() const { return end - start; }
};

/// A number over the day that changes in steps.
class StepCurve {
public:
    struct Step {
        Seconds at = 0;
        int count = 0;  ///< from there to the next step
    };

    StepCurve() = default;
    /// How many of the intervals hold a time; one without length holds none.
    explicit StepCurve(std::span<const Interval> intervals);

    [[nodiscard]] int at(Seconds time) const;
    [[nodiscard]] const std::vector<Step>& steps() const { return steps_; }
    /// The greatest number and the first time that has it; 0 at 0 where there is none.
    [[nodiscard]] Step peak() const { return peak_; }

private:
    std::vector<Step> steps_;
    Step peak_;
};

/// What serves a run: its route's vehicle, else its route, else the run itself. Equal numbers are
/// one bus.
[[nodiscard]] std::vector<int> busOfRun(const Plan& plan);

/// Which of the empty trips that are stored with a run are counted with it: the one before it, and
/// the one after it unless that leads to a later run of those asked for.
struct CountedTrips {
    bool before = true;
    bool after = true;
};

/// For each run of the plan, whichever are asked for.
[[nodiscard]] std::vector<CountedTrips> countedTrips(const Plan& plan, std::span<const int> runs);

/// Buses in use over the day, of some of the plan's runs.
struct BusCurves {
    StepCurve withRiders;
    StepCurve out;  ///< with riders or on an empty trip
};

[[nodiscard]] BusCurves busCurves(const Plan& plan, std::span<const int> runs);
/// The first of these alone. `busOf` is what busOfRun() says of the plan.
[[nodiscard]] StepCurve ridersCurve(const Plan& plan, std::span<const int> runs,
                                    std::span<const int> busOf);

}  // namespace schedule
