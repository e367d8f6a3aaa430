#pragma once

#include <string>
#include <vector>

#include "groupops/deadhead/routedeadhead.h"
#include "platform/base/ports.h"
#include "platform/table/texttable.h"

namespace groupops {

/// A leg that could not be calculated, and its route as planners know it.
struct OpenRouteLeg {
    std::string routeId;
    OpenLeg leg;
};

/// What a calculation over all routes has done.
struct DeadHeadOutcome {
    int routes = 0;      ///< all there are
    int calculated = 0;  ///< processed, failed ones included
    int failed = 0;      ///< with a run whose dead-head could not be calculated
    bool wasReset = false;
    bool stopped = false;  ///< the planner stopped before the last route
    std::vector<OpenRouteLeg> openLegs;
};

/// Marks the dead-head of every run as not calculated and every route as failed, in one
/// transaction. Raises store::StoreError.
void resetDeadHead(ado::Connection& routing);

/// Calculates every route in the order of the route ids; a route with its mark is one unit of work.
/// After each the planner may stop. At the end the need for a calculation is cleared, failed routes
/// or not; after a stop it stays. A route that could be calculated loses its mark of failure, one
/// that could not keeps the mark it has.
///
/// Raises what calculateRoute raises; the routes before the fault stay written.
DeadHeadOutcome calculateAllRoutes(const DeadHeadData& data, bool reset,
                                   base::ProgressPort& progress);

/// How many routes were calculated and how many of them failed.
[[nodiscard]] std::string closingMessage(const DeadHeadOutcome& outcome);

/// What is written and what is not after a stop.
[[nodiscard]] std::string stoppedMessage(const DeadHeadOutcome& outcome);

/// The open legs as a list: route, run, leg, what is missing.
[[nodiscard]] table::TextTable openLegsTable(const DeadHeadOutcome& outcome,
                                             ado::Connection& routing);

/// When all routes were last calculated, and whether runs have changed since.
[[nodiscard]] std::string lastCalculation(ado::Connection& routing);

}  // namespace groupops
