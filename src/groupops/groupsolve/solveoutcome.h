#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "groupops/base/outcome.h"
#include "platform/table/texttable.h"

namespace groupops {

/// How far a run of the group has come.
enum class SolveState {
    NotSent,
    Sent,             ///< the map program has it; its answer is not there
    Solved,           ///< the map program's answer is in the database
    StillProcessing,  ///< left out: the map program has not finished with it since the last time
    Gone,             ///< left out: another program has deleted it meanwhile
    Failed,           ///< left out: it could not be sent, or the map program refused it
};

struct SolveRun {
    std::string run;
    SolveState state = SolveState::NotSent;
    std::string why = {};  ///< for one that failed
};

/// What solving a group of runs has come to, also while it is under way.
struct SolveOutcome {
    std::vector<SolveRun> runs = {};
    bool stopped = false;    ///< the planner stopped before the last run
    std::string fault = {};  ///< why no further run could be sent; blank for none

    explicit SolveOutcome(const std::vector<std::string>& ids = {});

    [[nodiscard]] std::vector<std::string> runsIn(SolveState state) const;
    [[nodiscard]] std::size_t count(SolveState state) const { return runsIn(state).size(); }
    /// Whether the map program was given at least one run.
    [[nodiscard]] bool anySent() const;
    /// The runs that are not solved are left out, each for its state.
    [[nodiscard]] Outcome summary() const;
    /// Whether every run had its turn.
    [[nodiscard]] bool reachedEnd() const { return !stopped && fault.empty(); }
};

/// How solving is told.
[[nodiscard]] Wording solveWording();

/// The runs as a list with the columns run and state; red where a run could not be solved.
[[nodiscard]] table::TextTable tableOf(const SolveOutcome& outcome);

}  // namespace groupops
