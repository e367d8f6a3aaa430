#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/date.h"
#include "runsearch/schedule/chart.h"
#include "runsearch/schedule/plan.h"
#include "runsearch/schedule/telling.h"

namespace schedule {

/// Seconds on the way from one stop to another; nothing where it is not known.
using TravelTime = std::function<std::optional<Seconds>(std::int32_t from, std::int32_t to)>;

/// The time of a stop whose run starts so many seconds later; its date counts and stays.
[[nodiscard]] base::Date movedTime(base::Date time, Seconds by);

/// A run at another time or on another route. The run keeps its length.
struct Move {
    std::string run;
    std::int64_t route = 0;  ///< the route's key; 0 for none
    Seconds start = 0;
};

/// Changes that a planner tries out by hand. Nothing is saved; they are kept by run id, so that
/// they outlive a reading anew.
class Sketch {
public:
    void keep(Move move) { steps_.push_back(std::move(move)); }
    void undo();
    void clear() { steps_.clear(); }
    [[nodiscard]] bool isEmpty() const { return steps_.empty(); }

    /// What is left to be done to the stored runs: the last word on each run, by its id. A run that
    /// is back in its place, or gone, is left out.
    [[nodiscard]] std::vector<Move> moves(const Plan& stored) const;
    /// The plan with them, the empty trips of the routes that they touch worked out anew.
    [[nodiscard]] Plan applied(const Plan& stored, const TravelTime& travel) const;

private:
    std::vector<Move> steps_;
};

/// A run, by its place in the plan, as it is held over a route at a time.
struct Drag {
    int run = None;
    int route = None;
    Seconds start = 0;
};

/// How a run would stand between its neighbours on a route. A pair that overlaps is an Overlap
/// whose slack is what they share, below zero.
struct Fit {
    std::optional<Change> before;  ///< nothing where there is no run before it
    std::optional<Change> after;
    int former = None;
    int next = None;

    [[nodiscard]] std::optional<Change> worse() const;
};

[[nodiscard]] Fit fitOn(const Plan& plan, const Chart& chart, const Drag& drag,
                        const TravelTime& travel);

/// What a validation would say of a run where it is held.
struct MoveChecks {
    std::optional<int> riders;    ///< of its stops; nothing where they were not counted
    std::vector<CardLine> lines;  ///< one for each check that finds something
};

/// What a run that is held over a route would change, and what not.
[[nodiscard]] Card moveCard(const Plan& plan, const Chart& chart, const Drag& drag,
                            const TravelTime& travel, const MoveChecks& checks = {});

/// "2 changes kept: 112-2 to route 107; 105-3 to 9:50 AM." or what there is instead.
[[nodiscard]] std::string sketchText(const Plan& stored, const std::vector<Move>& moves);

}  // namespace schedule
