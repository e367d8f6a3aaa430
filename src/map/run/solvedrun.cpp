#include "map/run/solvedrun.h"

#include <algorithm>

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "map/run/solutionrows.h"
#include "map/shown/fields.h"
#include "map/shown/runscene.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/notcopied.h"
#include "platform/base/ports.h"
#include "stops/sequence/runstops.h"

namespace map {

namespace {

/// One unit of work of which nothing stays unless it was finished.
class AllOrNothing : private base::NotCopied {
public:
    explicit AllOrNothing(ado::Connection& connection) : connection_(connection) {
        connection_.BeginTrans();
    }
    ~AllOrNothing() {
        if (!finished_) {
            connection_.RollbackTrans();
        }
    }

    void finish() {
        connection_.CommitTrans();
        finished_ = true;
    }

private:
    ado::Connection& connection_;
    bool finished_ = false;
};

bool isSame(geo::Feet one, geo::Feet other) { return one.x == other.x && one.y == other.y; }

[[noreturn]] void refuseChanged(const MappedRun& run) {
    throw ChangedMeanwhile(fmt::format(
        "Another planner has changed the stops of the run {} meanwhile.  Nothing was saved.",
        run.id));
}

void noteChange(ado::Recordset& row, const std::string& user) {
    row["ChangedBy"].Value(user);
    row["changeddt"].Value(base::Now());
}

void saveStops(ado::Connection& routing, const MappedRun& run, const streets::Solution& solution,
               const std::string& user) {
    ado::Recordset rows("SELECT STOP_TRIPTYPE.* FROM STOP_TRIPTYPE WHERE STOP_TRIPTYPE.RUN='" +
                            ado::escaped(run.id) +
                            "' ORDER BY STOP_TRIPTYPE.RUNSEQ, STOP_TRIPTYPE.ID",
                        routing, ado::CursorType::Dynamic);
    std::size_t at = 0;
    for (; !rows.Eof(); rows.MoveNext(), ++at) {
        if (at >= run.stops.size() || rows["ID"].asInteger() != run.stops[at].stopTripId) {
            refuseChanged(run);
        }
        setFigures(rows, solution.stops[at], solution.sides);
        noteChange(rows, user);
        rows.Update();
    }
    if (at != run.stops.size()) {
        refuseChanged(run);
    }
}

void saveTotals(ado::Connection& routing, const MappedRun& run, const streets::Solution& solution,
                const std::string& user) {
    ado::Recordset row;
    if (!data::openRun(row, routing, run.id, ado::CursorType::Dynamic)) {
        refuseChanged(run);
    }
    setTotals(row, solution);
    noteChange(row, user);
    row.Update();
}

std::vector<std::int64_t> keysOf(const MappedRun& run) {
    std::vector<std::int64_t> keys;
    std::ranges::transform(run.stops, std::back_inserter(keys), &MappedStop::stopTripId);
    return keys;
}

void requireOrder(ado::Connection& routing, const MappedRun& run) {
    std::vector<std::int64_t> keys;
    std::ranges::transform(stops::readRunStops(routing, run.id), std::back_inserter(keys),
                           &stops::RunStop::stopTripId);
    if (keys != keysOf(run)) {
        refuseChanged(run);
    }
}

/// Which of a run's stops have to be moved: all but the longest row of those that stand one behind
/// the other already. `from` is where each stood.
std::vector<bool> stopsToMove(const std::vector<std::size_t>& from) {
    std::vector<std::size_t> length(from.size(), 1);
    std::vector<std::size_t> before(from.size(), from.size());
    std::size_t last = 0;
    for (std::size_t i = 0; i < from.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (from[j] < from[i] && length[j] + 1 >= length[i]) {
                length[i] = length[j] + 1;
                before[i] = j;
            }
        }
        last = length[i] > length[last] ? i : last;
    }
    std::vector<bool> moves(from.size(), true);
    for (std::size_t i = last; i < from.size(); i = before[i]) {
        moves[i] = false;
    }
    return moves;
}

/// As a planner would do it: no more moves than it takes, from the end on.
void saveOrder(ado::Connection& routing, const MappedRun& stored, const MappedRun& changed,
               const std::string& user) {
    requireOrder(routing, stored);
    const auto keys = keysOf(stored);
    const auto wanted = keysOf(changed);
    std::vector<std::size_t> from;
    std::ranges::transform(wanted, std::back_inserter(from), [&](std::int64_t key) {
        return static_cast<std::size_t>(std::ranges::find(keys, key) - keys.begin());
    });
    const stops::EditedRun edited{
        .run = stored.id, .tripType = stored.tripType, .user = user, .isMapped = true};
    const auto moves = stopsToMove(from);
    for (std::size_t i = wanted.size(); i-- > 0;) {
        const std::vector moved{wanted[i]};
        const auto behind = i + 1 < wanted.size() ? wanted[i + 1] : 0;
        if (moves[i] &&
            !stops::placeStops(routing, edited, moved, behind).changedByAnother.empty()) {
            refuseChanged(stored);
        }
    }
}

void savePlace(ado::Connection& routing, const MappedRun& run, const MappedStop& from,
               const MappedStop& to) {
    ado::Recordset row(
        fmt::format("SELECT STOP.* FROM STOP WHERE STOP.INT_STOPID={}", from.intStopId), routing,
        ado::CursorType::Dynamic);
    if (row.Eof() || !isSame(placeOf(row), from.at)) {
        refuseChanged(run);
    }
    row["XPOS"].Value(to.at.x);
    row["YPOS"].Value(to.at.y);
    if (to.wantsRightSide != from.wantsRightSide) {
        row["RIGHTSIDE"].Value(to.wantsRightSide);
    }
    row.Update();
    row.Close();
    routing.Execute(fmt::format(
        "UPDATE RUN SET RUN.REGENERATE=True WHERE RUN.RUN IN (SELECT STOP_TRIPTYPE.RUN FROM "
        "STOP_TRIPTYPE WHERE STOP_TRIPTYPE.INT_STOPID={})",
        from.intStopId));
}

void savePlaces(ado::Connection& routing, const MappedRun& stored, const MappedRun& changed) {
    for (const auto& stop : changed.stops) {
        const auto from = std::ranges::find(stored.stops, stop.stopTripId, &MappedStop::stopTripId);
        if (from != stored.stops.end() && !isSame(from->at, stop.at)) {
            savePlace(routing, stored, *from, stop);
        }
    }
}

}  // namespace

ChangedMeanwhile::ChangedMeanwhile(const std::string& what)
    : RunTimeError(base::errors::InvalidProcedureCall, what) {}

void saveSolution(ado::Connection& routing, const MappedRun& run, const streets::Solution& solution,
                  const std::string& user) {
    AllOrNothing unit(routing);
    saveStops(routing, run, solution, user);
    writeDirections(routing, run.id, runToSolve(run).stops, solution.directions);
    saveTotals(routing, run, solution, user);
    unit.finish();
}

MappedRun inOrder(const MappedRun& run, std::span<const std::size_t> order) {
    MappedRun changed = run;
    for (std::size_t i = 0; i < order.size(); ++i) {
        changed.stops[i] = run.stops[order[i]];
    }
    return changed;
}

std::optional<MappedRun> withStopMoved(const MappedRun& run, std::size_t stop, std::size_t before) {
    if (isFixed(run.stops[stop]) || before == stop || before == stop + 1) {
        return std::nullopt;
    }
    MappedRun changed = run;
    const auto first = changed.stops.begin();
    const auto at = first + static_cast<std::ptrdiff_t>(stop);
    const auto to = first + static_cast<std::ptrdiff_t>(before);
    if (before < stop) {
        std::rotate(to, at, at + 1);
    } else {
        std::rotate(at, at + 1, to);
    }
    return changed;
}

MappedRun withStopAt(const MappedRun& run, std::size_t stop, geo::Feet at) {
    MappedRun changed = run;
    changed.stops[stop].at = at;
    changed.stops[stop].isPlaced = true;
    return changed;
}

void saveChanged(ado::Connection& routing, const MappedRun& stored, const MappedRun& changed,
                 const streets::Solution& solution, const std::string& user) {
    AllOrNothing unit(routing);
    const bool isReordered = keysOf(stored) != keysOf(changed);
    if (isReordered) {
        saveOrder(routing, stored, changed, user);
        stops::needDeadHeadBuild(routing);
    }
    savePlaces(routing, stored, changed);
    saveSolution(routing, changed, solution, user);
    unit.finish();
}

}  // namespace map
