#include "groupops/groupchange/runchange.h"

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "groupops/base/grouploop.h"

namespace groupops {

namespace {

std::optional<LeftOut> changeRow(ado::Connection& routing, const std::string& run,
                                 std::span<const RunChange> changes) {
    ado::Recordset row;
    if (!data::openRun(row, routing, run, ado::CursorType::Dynamic)) {
        return LeftOut{DeletedMeanwhile, run};
    }
    for (const RunChange& change : changes) {
        row[change.column].Value(change.value);
    }
    row.Update();
    row.Close();
    return std::nullopt;
}

}  // namespace

Outcome changeRuns(ado::Connection& routing, std::span<const std::string> runs,
                   std::span<const RunChange> changes, base::ProgressPort& progress) {
    Outcome outcome{.asked = static_cast<int>(runs.size())};
    GroupLoop loop(routing, progress, runChangeWording(), outcome);
    loop.forEach(
        runs,
        [&](const std::string& run) {
            loop.worksOn(run);
            return changeRow(routing, run, changes);
        },
        [](const std::string& run) { return fmt::format("Changed information for run: {}.", run); },
        Telling::Done, [](const std::string& run) { return std::vector{data::runSql(run)}; });
    return outcome;
}

}  // namespace groupops
