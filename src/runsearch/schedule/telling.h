#pragma once

#include <string>
#include <vector>

#include "runsearch/schedule/chart.h"
#include "runsearch/schedule/plan.h"

/// What the schedule says in words.
namespace schedule {

/// One line of a run's card.
struct CardLine {
    std::string label;
    std::string text;
    Trouble trouble = Trouble::Nothing;  ///< shown with its sign
    bool isStrong = false;
    bool isGood = false;  ///< shown with a tick
};

struct Card {
    std::string run;
    std::string school;
    std::string description;
    std::vector<CardLine> lines;
};

[[nodiscard]] Card cardOf(const Plan& plan, const Chart& chart, int run);

/// The card in one sentence for a screen reader, problems first.
[[nodiscard]] std::string spokenText(const Card& card);

/// "59 runs on 31 routes", "59 runs to 6 schools".
[[nodiscard]] std::string countText(const Plan& plan, const Chart& chart);
/// "2 overlaps, 1 short, 1 tight"; "no overlaps" and the like are left out, "no problems" where
/// there is none at all.
[[nodiscard]] std::string troublesText(const Troubles& troubles);

/// What stands on a plate before a bar: "overlaps 11 min", "bus 119 twice, 43 min", "5 min short",
/// "12" for a tight change; blank for none.
[[nodiscard]] std::string plateText(const Plan& plan, const Chart& chart, const Bar& bar);

/// What a row's head says.
struct RowHead {
    std::string name = {};
    std::string detail = {};  ///< the driver
    std::string bus = {};     ///< where it goes by another name than the route
    bool isBusTwice = false;
};
[[nodiscard]] RowHead headOf(const Plan& plan, const Chart& chart, const Row& row);

/// "9 runs · 557 riders" of the school whose band is that row, by its place.
[[nodiscard]] std::string schoolText(const Plan& plan, const Chart& chart, int band);

/// Whether a run is found by what was typed: its id, description, route, vehicle, driver or school.
[[nodiscard]] bool isFound(const Plan& plan, const ScheduledRun& run, std::string_view typed);

}  // namespace schedule
