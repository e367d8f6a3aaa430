#include "groupops/groupsolve/solveoutcome.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/table/itemtable.h"

namespace groupops {

namespace {

std::string stateText(const SolveRun& run) {
    switch (run.state) {
        case SolveState::Sent:
            return "Sent, no answer yet";
        case SolveState::Solved:
            return "Solved";
        case SolveState::StillProcessing:
            return "Left out: still with the mapping software from last time";
        case SolveState::Gone:
            return "Left out: deleted meanwhile";
        case SolveState::Failed:
            return "Left out: " + run.why;
        case SolveState::NotSent:
            break;
    }
    return "Not sent";
}

LeftOut leftOut(const SolveRun& run) {
    switch (run.state) {
        case SolveState::Sent:
            return {"Sent, but the answer has not come", run.run};
        case SolveState::StillProcessing:
            return {"Left out, for the mapping software has not finished with them", run.run};
        case SolveState::Gone:
            return {DeletedMeanwhile, run.run};
        case SolveState::Failed:
            return {"Could not be sent", fmt::format("{} ({})", run.run, run.why)};
        case SolveState::NotSent:
        case SolveState::Solved:
            break;
    }
    return {"Not sent", run.run};
}

}  // namespace

SolveOutcome::SolveOutcome(const std::vector<std::string>& ids) {
    for (const std::string& id : ids) {
        runs.push_back({.run = id});
    }
}

std::vector<std::string> SolveOutcome::runsIn(SolveState state) const {
    std::vector<std::string> ids;
    for (const SolveRun& run : runs) {
        if (run.state == state) {
            ids.push_back(run.run);
        }
    }
    return ids;
}

bool SolveOutcome::anySent() const {
    return std::ranges::any_of(runs, [](const SolveRun& run) {
        return run.state == SolveState::Sent || run.state == SolveState::Solved;
    });
}

Outcome SolveOutcome::summary() const {
    Outcome outcome{.asked = static_cast<int>(runs.size()), .stopped = stopped, .fault = fault};
    for (const SolveRun& run : runs) {
        if (run.state == SolveState::Solved) {
            ++outcome.done;
        } else {
            outcome.leftOut.push_back(leftOut(run));
        }
    }
    return outcome;
}

Wording solveWording() {
    return {"run", "solved", "the group run solve", "What is solved is in the database."};
}

table::TextTable tableOf(const SolveOutcome& outcome) {
    auto table = table::tableOf<SolveRun>(
        outcome.runs, {{"Run", 1950, &SolveRun::run}, {"State", 5950, stateText}});
    for (std::size_t row = 0; row < outcome.runs.size(); ++row) {
        if (outcome.runs[row].state > SolveState::Solved) {
            table.colourRed(row, 1, 1);
        }
    }
    return table;
}

}  // namespace groupops
