#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/table/texttable.h"
#include "runsearch/schedule/buses.h"
#include "runsearch/schedule/plan.h"

namespace schedule {

/// What the runs of a summary have in common.
enum class Grouping { School, SchoolType, TripType, Location, VehicleType };

/// The runs of one group added up.
struct Summary {
    std::string name;  ///< "No school" and the like where the runs have none
    int runs = 0;
    int stops = 0;
    int students = 0;
    std::optional<Seconds> firstStart;
    std::optional<Seconds> lastEnd;
    double hours = 0;       ///< with riders
    double miles = 0;       ///< with riders
    double emptyMiles = 0;  ///< each empty trip once, with the run that it leads to
    StepCurve buses;        ///< in use with riders
};

struct Summaries {
    std::vector<Summary> groups;  ///< by name, those without one last
    Summary all;
    int withoutLength = 0;  ///< runs that start and end in the same second, or have no times
};

/// Sums up some of the plan's runs; each is in one group.
[[nodiscard]] Summaries summarise(const Plan& plan, std::span<const int> runs, Grouping grouping);

/// The numbers as a list: sorted as numbers and times, with a last column that is left to be drawn.
/// A row stands for the group of its place.
[[nodiscard]] table::TextTable summaryTable(const Summaries& summaries, Grouping grouping);
/// The total in the same columns.
[[nodiscard]] table::TextTable totalTable(const Summaries& summaries, Grouping grouping);

}  // namespace schedule
