#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "runsearch/schedule/chart.h"
#include "runsearch/schedule/plan.h"
#include "runsearch/schedule/telling.h"

namespace schedule {

/// Seconds on the way from one stop to another; nothing where it is not known.
using TravelTime = std::function<std::optional<Seconds>(std::int32_t from, std::int32_t to)>;

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

/// Whether a run would fit on a route at a time: the worse of the changes to it and from it. A pair
/// that overlaps is an Overlap whose slack is what they share, below zero. Nothing for a route
/// without another run beside it.
[[nodiscard]] std::optional<Change> fitOn(const Plan& plan, const Chart& chart, int run, int route,
                                          Seconds start, const TravelTime& travel);

/// What a run that is held over a route would change, and what not.
[[nodiscard]] Card moveCard(const Plan& plan, const Chart& chart, int run, int route, Seconds start,
                            const TravelTime& travel);

/// "2 changes kept: 112-2 to route 107; 105-3 to 9:50 AM." or what there is instead.
[[nodiscard]] std::string sketchText(const Plan& stored, const std::vector<Move>& moves);

}  // namespace schedule
