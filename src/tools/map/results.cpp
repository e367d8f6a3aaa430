#include "tools/map/results.h"

#include <optional>

#include "data/runs/runrow.h"
#include "map/run/solutionrows.h"
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
    ado::Recordset rows("SELECT STOP_TRIPTYPE.* FROM STOP_TRIPTYPE WHERE STOP_TRIPTYPE.RUN='" +
                            ado::escaped(solved.id()) + "'",
                        routing, ado::CursorType::Dynamic);
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto at =
            findStop(solved, rows["INT_STOPID"].asInteger(), rows["RUNSEQ"].asInteger());
        if (!at) {
            continue;
        }
        ::map::setFigures(rows, solved.solution().stops[*at], solved.solution().sides);
        rows.Update();
    }
}

void writeTotals(ado::Connection& routing, const SolvedRun& solved) {
    ado::Recordset row;
    if (data::openRun(row, routing, solved.id(), ado::CursorType::Dynamic)) {
        ::map::setTotals(row, solved.solution());
        row.Update();
    }
}

}  // namespace

void writeResults(ado::Connection& routing, const SolvedRun& solved) {
    ado::CommitOnExit unit(routing);
    writeStops(routing, solved);
    ::map::writeDirections(routing, solved.id(), solved.stops(), solved.solution().directions);
    writeTotals(routing, solved);
    unit.commit();
}

}  // namespace tools::map
