#include "tools/map/results.h"

#include <optional>

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "platform/ado/sqltext.h"

namespace tools::map {

namespace {

std::optional<std::size_t> findVisit(const SolvedRun& solved, std::int64_t stop,
                                     std::int64_t sequence) {
    for (std::size_t i = 0; i < solved.run().visits.size(); ++i) {
        if (solved.run().visits[i].stop->id == stop && solved.sequence(i) == sequence) {
            return i;
        }
    }
    return std::nullopt;
}

void writeStops(ado::Connection& routing, const SolvedRun& solved) {
    ado::Recordset rows;
    rows.Open("SELECT STOP_TRIPTYPE.* FROM STOP_TRIPTYPE WHERE STOP_TRIPTYPE.RUN='" +
                  ado::escaped(solved.run().id) + "'",
              routing, ado::CursorType::Dynamic);
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto at =
            findVisit(solved, rows["INT_STOPID"].asInteger(), rows["RUNSEQ"].asInteger());
        if (!at) {
            continue;
        }
        const auto& visit = solved.run().visits[*at];
        rows["DIST_TOSTOP"].Value(visit.miles);
        rows["TIME_TOSTOP"].Value(visit.driveMinutes);
        if (visit.time) {
            rows["TIME_AT_STOP"].Value(*visit.time);
        }
        rows["CUM_TIME"].Value(visit.cumulatedMinutes);
        rows["CUM_MILES"].Value(visit.cumulatedMiles);
        rows.Update();
    }
}

void writeDirections(ado::Connection& routing, const SolvedRun& solved) {
    routing.Execute("DELETE FROM RUNDIR WHERE RUNDIR.RUN='" + ado::escaped(solved.run().id) + "'");
    ado::Recordset rows;
    rows.Open("SELECT RUNDIR.* FROM RUNDIR WHERE RUNDIR.ID=0", routing, ado::CursorType::Dynamic);
    for (const auto& line : solved.directions()) {
        rows.AddNew();
        rows["RUN"].Value(solved.run().id);
        rows["INT_STOPID"].Value(line.stop->id);
        rows["STOPID"].Value(line.stop->stopId);
        rows["LINETYPE"].Value(line.type);
        rows["LINETEXT1"].Value(line.text1);
        rows["LINETEXT2"].Value(line.text2);
        rows["SHORTTEXT"].Value(line.shortText);
        rows["SHORTDIST"].Value(line.shortDistance);
        rows.Update();
    }
}

void writeTotals(ado::Connection& routing, const SolvedRun& solved) {
    const auto& run = solved.run();
    ado::Recordset rows;
    if (!data::openRun(rows, routing, run.id, ado::CursorType::Dynamic)) {
        return;
    }
    const auto idOrNull = [](std::int64_t id) { return id == 0 ? base::Value() : base::Value(id); };
    rows["STARTTIME"].Value(run.start);
    rows["ENDTIME"].Value(run.end);
    rows["TOTAL_TIME"].Value(run.totalMinutes);
    rows["TOTAL_MILES"].Value(run.totalMiles);
    rows["total_stops"].Value(run.timedStops());
    rows["FirstStop"].Value(idOrNull(run.firstStop()));
    rows["LastStop"].Value(idOrNull(run.lastStop()));
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
