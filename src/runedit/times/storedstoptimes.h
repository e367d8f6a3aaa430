#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/recordset.h"
#include "runedit/times/stoptimes.h"

namespace runedit {

/// Which rows are timed: a run's own, or those of the work table, which holds one run.
enum class StopTable { Routing, Working };

/// The timed stops of one run, as they are stored.
struct StoredStops {
    ado::Connection& connection;  ///< the one that the rows are on
    StopTable rows = StopTable::Routing;
    std::string run;  ///< not used for the work table
};

/// Where a retry is told.
using LogLine = std::function<void(const std::string&)>;

/// The rows in the order in which they are timed; directional stops are left out.
[[nodiscard]] std::string stopRowsSql(StopTable rows, TimeOrder order, std::string_view run);

/// All rows of a recordset of that query. Raises Overflow for minutes beyond single precision.
[[nodiscard]] std::vector<TimedStop> readStops(ado::Recordset& rows);

/// Writes to the rows that readStops has read. A row that was deleted meanwhile is tried three
/// times more, each time logged. Raises RecordDeleted after that, RecordChanged, store::StoreError.
void writeStops(ado::Recordset& rows, const std::vector<StopWrite>& writes, const LogLine& log);

/// Computes and writes all times of a run as one unit of work; returns the last time computed.
/// "Start" counts from the first stop, "End" from the last one. "MID" counts on from the stop that
/// stands at the anchor time, then back from the last stop: mode and anchor are left as "End" and
/// the last stop's time. Where no stop stands there, or there is none at all, nothing is written
/// and the anchor returned. The mode is taken in any letter case.
///
/// Raises InvalidProcedureCall for another mode, and what timesFrom and writeStops raise.
base::Date timeStoredStops(const StoredStops& stops, std::string& mode, base::Date& anchor,
                           const LogLine& log);

}  // namespace runedit
