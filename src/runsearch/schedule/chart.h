#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <vector>

#include "runsearch/schedule/buses.h"
#include "runsearch/schedule/plan.h"

namespace schedule {

enum class Order { ByRoute, BySchool };

/// How the runs are laid out.
struct Layout {
    Order order = Order::ByRoute;
    Days days = AllDays;
    Seconds tightUnder = 15 * Minute;  ///< a change with less slack is tight
    std::set<int> closedSchools = {};  ///< by school, those with one row instead of lanes
};

enum class RowKind : std::uint8_t { Route, NoRoute, NoTimes, School, ClosedSchool, Lane };

enum class Trouble : std::uint8_t { Nothing, Tight, Short, Overlap };

/// One row of the chart with its bars, which follow one another in Chart::bars by start.
struct Row {
    RowKind kind = RowKind::Route;
    int subject = None;  ///< the route or the school; None for rows that have neither
    std::size_t first = 0;
    std::size_t count = 0;
    Trouble worst = Trouble::Nothing;  ///< of its bars
};

/// What lies between a bar and the one before it in the row of a route.
struct Change {
    int former = None;                   ///< the run before it; None for the first one
    Trouble trouble = Trouble::Nothing;  ///< whether the bus makes it: Tight, Short or Nothing
    bool isKnown = true;                 ///< whether the empty trip between both is
    bool viaGarage = false;
    Seconds leaves = 0;   ///< where the former run ends
    Seconds arrives = 0;  ///< where the empty trip from it ends
    Seconds sets = 0;     ///< where the empty trip to the bar begins
    /// What is left between both; negative where it is missing. Only where it is known.
    Seconds slack = 0;
};

/// Two runs at one time on one route, with one vehicle or with one driver.
struct Overlap {
    enum class Of : std::uint8_t { Route, Vehicle, Driver };
    int other = None;
    Seconds seconds = 0;
    Of of = Of::Route;
};

struct Bar {
    int run = 0;
    std::int16_t zone = None;
    int row = 0;
    Seconds start = 0;
    Seconds end = 0;
    Change change = {};
};

/// Something a planner looks for, at a bar.
struct Problem {
    std::size_t bar = 0;
    Trouble trouble = Trouble::Nothing;
};

/// How many runs there are of each Trouble.
using Troubles = std::array<int, 4>;

/// The runs of a plan, laid out. Plain values: what a view paints and a test counts.
struct Chart {
    Layout layout;
    std::vector<Row> rows;
    std::vector<Bar> bars;
    std::vector<int> runs;            ///< those of the layout's days, in the order of the plan
    std::vector<int> barOf;           ///< by run; None where it is not shown
    std::vector<Overlap> overlaps;    ///< by run, with the one before it that it overlaps most
    std::vector<Overlap> overlapped;  ///< by run, with the one after it
    std::vector<Problem> problems;    ///< by row, then start
    Troubles troubles{};
    BusCurves buses;
    Seconds from = 0;  ///< the earliest and the latest time that is drawn, empty trips included
    Seconds until = 0;

    [[nodiscard]] const Row& rowOf(const Bar& bar) const {
        return rows[static_cast<std::size_t>(bar.row)];
    }
    [[nodiscard]] std::span<const Bar> barsOf(const Row& row) const {
        return std::span(bars).subspan(row.first, row.count);
    }
    /// The worst of a bar's own; Overlap where another run overlaps it, too.
    [[nodiscard]] Trouble troubleOf(const Bar& bar) const;
};

[[nodiscard]] Chart layOut(const Plan& plan, const Layout& layout);

/// For each run asked for, by its place in the plan, the earlier one that it overlaps longest. A
/// pair on one route is told as that, else one with the same vehicle, else one with the same
/// driver. Of several that start at once the first in `runs` is the earlier one.
[[nodiscard]] std::vector<Overlap> findOverlaps(const Plan& plan, std::span<const int> runs);

/// Whether the bus makes it from one run of its route to the next.
[[nodiscard]] Change changeBetween(const ScheduledRun& former, const ScheduledRun& run,
                                   Seconds tightUnder);

/// How many runs of a row without times stand beside one another.
constexpr std::size_t UntimedInRow = 8;

}  // namespace schedule
