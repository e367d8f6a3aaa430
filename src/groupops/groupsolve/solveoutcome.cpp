#include "groupops/groupsolve/solveoutcome.h"

#include <algorithm>

#include <fmt/format.h>

#include "groupops/base/groupoutcome.h"
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

/// "\n\nHeading: A, B and 3 more."; nothing for no run.
std::string paragraph(std::string_view heading, const std::vector<std::string>& ids) {
    return ids.empty() ? std::string() : fmt::format("\n\n{}: {}.", heading, someOf(ids));
}

std::string failures(const SolveOutcome& outcome) {
    constexpr int Shown = 5;
    std::string text;
    int told = 0;
    for (const SolveRun& run : outcome.runs) {
        if (run.state == SolveState::Failed && ++told <= Shown) {
            text += fmt::format("\n\n{} could not be sent: {}", run.run, run.why);
        }
    }
    if (told > Shown) {
        text += fmt::format("\n\n{} more could not be sent.", told - Shown);
    }
    return text;
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

std::string closingMessage(const SolveOutcome& outcome) {
    return fmt::format("{} of {} solved.", outcome.count(SolveState::Solved),
                       runCount(outcome.runs.size()));
}

std::string whatWasNotSolved(const SolveOutcome& outcome) {
    if (outcome.complete()) {
        return {};
    }
    std::string text = closingMessage(outcome);
    if (!outcome.fault.empty()) {
        text += "\n\n" + outcome.fault;
    }
    if (outcome.stopped) {
        text += "\n\nYou stopped the group run solve.";
    }
    text += paragraph("Sent, but the answer has not come", outcome.runsIn(SolveState::Sent));
    text += paragraph("Not sent", outcome.runsIn(SolveState::NotSent));
    text += paragraph("Left out, for the mapping software has not finished with them",
                      outcome.runsIn(SolveState::StillProcessing));
    text += paragraph("Deleted by another program meanwhile", outcome.runsIn(SolveState::Gone));
    return text + failures(outcome);
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
