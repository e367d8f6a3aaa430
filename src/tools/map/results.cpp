#include "tools/map/results.h"

#include <optional>

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "platform/ado/sqltext.h"

namespace tools::map {

namespace {

std::optional<std::size_t> findStop(const SolvedRun& solved, std::int64_t stop,
                                    std::int64_t sequence) {
    for (std::size_t i = 0; i < solved.stops().size(); ++i) {
        if (solved.stops()[i].id == stop && solved.sequence(i) == sequence) {
            return i;
        }
    }
    return std::nullopt;
}

void writeStops(ado::Connection& routing, const SolvedRun& solved) {
    ado::Recordset rows;
    rows.Open("SELECT STOP_TRIPTYPE.* FROM STOP_TRIPTYPE WHERE STOP_TRIPTYPE.RUN='" +
                  ado::escaped(solved.id()) + "'",
              routing, ado::CursorType::Dynamic);
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto at =
            findStop(solved, rows["INT_STOPID"].asInteger(), rows["RUNSEQ"].asInteger());
        if (!at) {
            continue;
        }
        const auto& found = solved.solution().stops[*at];
        rows["DIST_TOSTOP"].Value(found.miles);
        rows["TIME_TOSTOP"].Value(found.driveMinutes);
        if (found.time) {
            rows["TIME_AT_STOP"].Value(*found.time);
        }
        rows["CUM_TIME"].Value(found.cumulatedMinutes);
        rows["CUM_MILES"].Value(found.cumulatedMiles);
        if (solved.solution().sides && found.halt) {
            rows["RUN_PICKUP_SIDE"].Value(found.halt->rightSide ? "right" : "left");
        }
        rows.Update();
    }
}

void writeDirections(ado::Connection& routing, const SolvedRun& solved) {
    routing.Execute("DELETE FROM RUNDIR WHERE RUNDIR.RUN='" + ado::escaped(solved.id()) + "'");
    ado::Recordset rows;
    rows.Open("SELECT RUNDIR.* FROM RUNDIR WHERE RUNDIR.ID=0", routing, ado::CursorType::Dynamic);
    for (const auto& line : solved.solution().directions) {
        rows.AddNew();
        rows["RUN"].Value(solved.id());
        rows["INT_STOPID"].Value(solved.stops()[line.stop].id);
        rows["STOPID"].Value(solved.stops()[line.stop].stopId);
        rows["LINETYPE"].Value(line.type);
        rows["LINETEXT1"].Value(line.text1);
        rows["LINETEXT2"].Value(line.text2);
        rows["SHORTTEXT"].Value(line.shortText);
        rows["SHORTDIST"].Value(line.shortDistance);
        rows.Update();
    }
}

void writeTotals(ado::Connection& routing, const SolvedRun& solved) {
    const auto& found = solved.solution();
    ado::Recordset rows;
    if (!data::openRun(rows, routing, solved.id(), ado::CursorType::Dynamic)) {
        return;
    }
    const auto idOrNull = [](std::int64_t id) { return id == 0 ? base::Value() : base::Value(id); };
    rows["STARTTIME"].Value(found.start);
    rows["ENDTIME"].Value(found.end);
    rows["TOTAL_TIME"].Value(found.totalMinutes);
    rows["TOTAL_MILES"].Value(found.totalMiles);
    rows["total_stops"].Value(found.timedStops);
    rows["FirstStop"].Value(idOrNull(found.firstStop));
    rows["LastStop"].Value(idOrNull(found.lastStop));
    rows["REGENERATE"].Value(false);
    rows.Update();
}

}  // namespace

void writeResults(ado::Connection& routing, const SolvedRun& solved) {
    ado::CommitOnExit unit(routing);
    writeStops(routing, solved);
    writeDirections(routing, solved);
    writeTotals(routing, solved);
    unit.commit();
}

}  // namespace tools::map
