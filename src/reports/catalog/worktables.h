#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/base/date.h"
#include "reports/base/content.h"

namespace reports {

/// Some of a preparation's runs, by their keys in RPT_RUN; their rows are added in one transaction.
struct Batch {
    ado::Connection& work;  ///< sees the tables of routing and trip, too
    std::int64_t session = 0;
    std::int64_t first = 0, last = 0;
    std::int64_t stopsBefore = 0;  ///< the last key of RPT_STOP before the batch
    base::Date now;
    base::Date since;    ///< what was noted before it is left out
    double runCost = 0;  ///< the district's of a mile
};

/// The ids that a question finds in its column RUN; nothing where `keepGoing` said no.
[[nodiscard]] std::optional<std::vector<std::string>> runsOf(ado::Connection& work,
                                                             const std::string& question,
                                                             const KeepGoing& keepGoing);
/// Asks for the runs that a condition on RUN holds for, in no order.
[[nodiscard]] std::string runsMeeting(const std::string& condition);
/// Asks for a session's runs in an order by the columns of their work table.
[[nodiscard]] std::string runsFilled(std::int64_t session, const std::string& order);

enum class RunColumns { All, OfOrder };

/// Puts runs into the work table, in that order, with all columns or those that the order names.
/// Added in one transaction all runs of a preparation have keys that stand one behind the other.
void fillRuns(ado::Connection& work, std::int64_t session, std::span<const std::string> runs,
              const std::string& order, RunColumns columns);

/// What the empty trips of the runs and all their miles come to.
void fillCosts(const Batch& batch);

// Each adds what belongs to the runs of a batch, in their order.

/// Stops by sequence, without turn points; on regular ones with those who get on or off.
void fillStops(const Batch& batch);
/// How many ride on each run, or on each run home: they are on the bus from its beginning.
void fillRiders(const Batch& batch);
void fillRidersHome(const Batch& batch);
/// Who gets on or off at the batch's stops, which are there already, on the day of `now`.
void fillStudents(const Batch& batch);
/// The lines of the directions as the map delivered them.
void fillDirections(const Batch& batch);
/// Warnings by their rule, newest first.
void fillWarnings(const Batch& batch);
/// Who changed what: the run's own columns, and the entries of the log.
void fillChanges(const Batch& batch);
/// The runs before and after on the route, and the bus's next one that shares a day.
void fillNeighbours(const Batch& batch);

/// The key of the newest row, whosever it is; 0 without one.
[[nodiscard]] std::int64_t lastKey(ado::Connection& work, std::string_view table);

/// A column of the runs' work table, so that an order may name it.
[[nodiscard]] bool isRunColumn(std::string_view column);

}  // namespace reports
