#pragma once

#include <string>
#include <vector>

#include "groupops/groupsolve/solveoutcome.h"
#include "platform/base/ports.h"
#include "runedit/map/maphandoff.h"

namespace groupops {

/// How the wait for the map program's answer to a run has ended.
enum class MapReply {
    Received,
    RunGone,     ///< the run was deleted while the map program had it
    MapEnded,    ///< the map program has ended without an answer
    NotAwaited,  ///< the planner did not want to wait any longer
};

/// What solving a group needs of the map's side.
class MapSide {
public:
    virtual ~MapSide() = default;
    /// Raises one of dde::errors where no map program can be reached.
    virtual void require() = 0;
    /// Makes the request list that the clean-up reads; answers with the runs that it has to leave
    /// out. Raises "Path/File access error" (75).
    virtual std::vector<runedit::UnlistedRun> listRuns(const std::vector<std::string>& runs) = 0;
    /// Removes what earlier hand-overs of the listed runs have left; false where the planner
    /// stopped.
    virtual bool cleanUp(std::size_t runs) = 0;
    /// Waits while another program keeps the database locked; false where the planner stopped.
    virtual bool awaitDatabase(const Outcome& soFar, base::ProgressPort& progress) = 0;
    /// Hands one run over; raises as runedit::sendRunToMap does.
    virtual void send(const std::string& run) = 0;
    virtual MapReply awaitReply(const std::string& run) = 0;
    /// A run's state has changed, or its turn has come.
    virtual void showState(const SolveOutcome& outcome, std::size_t at) = 0;
};

/// Sends the runs to the map program to be solved again, one after another: the next one goes when
/// the answer to the one before is in the database, so that no answer is taken for another run's.
/// A run with a fault of its own is left out; where the map program or the program folder fails,
/// no further run is sent. A run that meets a locked database is sent when it is free. Between two
/// runs the planner may stop.
///
/// Raises what is neither the run's fault nor the map's.
[[nodiscard]] SolveOutcome solveRuns(const std::vector<std::string>& runs, MapSide& map,
                                     base::ProgressPort& progress);

}  // namespace groupops
