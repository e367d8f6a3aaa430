#include "groupops/groupchange/runchange.h"

#include <fmt/format.h>

#include "data/runs/runrow.h"

namespace groupops {

namespace {

/// False where there is no such run.
bool changeRow(ado::Connection& routing, const std::string& run,
               std::span<const RunChange> changes) {
    ado::Recordset row;
    if (!data::openRun(row, routing, run, ado::CursorType::Dynamic)) {
        return false;
    }
    for (const RunChange& change : changes) {
        row[change.column].Value(change.value);
    }
    row.Update();
    row.Close();
    return true;
}

}  // namespace

GroupOutcome changeRuns(ado::Connection& routing, std::span<const std::string> runs,
                        std::span<const RunChange> changes, base::ProgressPort& progress) {
    GroupOutcome outcome;
    outcome.asked = static_cast<int>(runs.size());
    ado::GroupWork work(routing);
    for (const std::string& run : runs) {
        bool changed = false;
        outcome.stopped = progress.yield() ||
                          !work.unit(progress, [&] { changed = changeRow(routing, run, changes); });
        if (outcome.stopped) {
            break;
        }
        if (!changed) {
            outcome.gone.push_back(run);
            continue;
        }
        ++outcome.changed;
        progress.status(fmt::format("Changed information for run: {}.", run));
        progress.progress(100.0 * outcome.changed / outcome.asked);
    }
    return outcome;
}

}  // namespace groupops
