#include "map/run/solutionrows.h"

#include "platform/ado/sqltext.h"

namespace map {

void setFigures(ado::Recordset& row, const streets::SolvedStop& found, bool sides) {
    row["DIST_TOSTOP"].Value(found.miles);
    row["TIME_TOSTOP"].Value(found.driveMinutes);
    if (found.time) {
        row["TIME_AT_STOP"].Value(*found.time);
    }
    row["CUM_TIME"].Value(found.cumulatedMinutes);
    row["CUM_MILES"].Value(found.cumulatedMiles);
    if (sides && found.halt) {
        row["RUN_PICKUP_SIDE"].Value(found.halt->rightSide ? "right" : "left");
    }
}

void setTotals(ado::Recordset& row, const streets::Solution& solution) {
    const auto idOrNull = [](std::int64_t id) { return id == 0 ? base::Value() : base::Value(id); };
    row["STARTTIME"].Value(solution.start);
    row["ENDTIME"].Value(solution.end);
    row["TOTAL_TIME"].Value(solution.totalMinutes);
    row["TOTAL_MILES"].Value(solution.totalMiles);
    row["total_stops"].Value(solution.timedStops);
    row["FirstStop"].Value(idOrNull(solution.firstStop));
    row["LastStop"].Value(idOrNull(solution.lastStop));
    row["REGENERATE"].Value(false);
}

void writeDirections(ado::Connection& routing, const std::string& run,
                     std::span<const streets::RunStop> stops,
                     std::span<const streets::DirectionLine> lines) {
    routing.Execute("DELETE FROM RUNDIR WHERE RUNDIR.RUN='" + ado::escaped(run) + "'");
    ado::Recordset rows("SELECT RUNDIR.* FROM RUNDIR WHERE RUNDIR.ID=0", routing,
                        ado::CursorType::Dynamic);
    for (const auto& line : lines) {
        rows.AddNew();
        rows["RUN"].Value(run);
        rows["INT_STOPID"].Value(stops[line.stop].id);
        rows["STOPID"].Value(stops[line.stop].stopId);
        rows["LINETYPE"].Value(line.type);
        rows["LINETEXT1"].Value(line.text1);
        rows["LINETEXT2"].Value(line.text2);
        rows["SHORTTEXT"].Value(line.shortText);
        rows["SHORTDIST"].Value(line.shortDistance);
        rows.Update();
    }
}

}  // namespace map
