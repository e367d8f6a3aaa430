#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "groupops/base/outcome.h"
#include "groupops/deadhead/routedeadhead.h"
#include "platform/base/ports.h"
#include "platform/table/texttable.h"

namespace groupops {

/// A leg that could not be calculated, and its route as planners know it.
struct OpenRouteLeg {
    std::string routeId;
    OpenLeg leg;
};

/// What a calculation over all routes has done. A route with a leg that could not be calculated is
/// done, too.
struct DeadHeadOutcome : Outcome {
    int failed = 0;  ///< routes with a run whose dead-head could not be calculated
    bool wasReset = false;
    std::vector<OpenRouteLeg> openLegs = {};
};

/// Marks the dead-head of every run as not calculated, every route as failed and a calculation as
/// due, as a part of the caller's unit of work. Raises store::StoreError.
void resetDeadHead(ado::Connection& routing);

/// Calculates every route in the order of the route ids; a route with its mark is one unit of work,
/// see GroupLoop. At the end the need for a calculation is cleared, failed routes or not; after a
/// stop it stays. A route that could be calculated loses its mark of failure, one that could not
/// keeps the mark it has. A route with too many runs has failed and is not touched.
///
/// Raises what calculateRoute raises; the routes before the fault stay written.
DeadHeadOutcome calculateAllRoutes(const DeadHeadData& data, bool reset,
                                   base::ProgressPort& progress);

/// What a calculation of all routes will do.
struct DeadHeadOutlook {
    int routes = 0;
    std::int64_t runs = 0;
    /// Those with more runs than a route may have: they will fail.
    std::vector<std::pair<std::string, std::int64_t>> tooMany = {};
};
[[nodiscard]] DeadHeadOutlook deadHeadOutlook(ado::Connection& routing);
/// "57 routes with 412 runs will be calculated.", and the routes that will fail, each on a line of
/// its own.
[[nodiscard]] std::vector<std::string> textOf(const DeadHeadOutlook& outlook);

/// How many routes were calculated and how many of them failed.
[[nodiscard]] std::string closingMessage(const DeadHeadOutcome& outcome);

/// How the calculation is told; `wasReset` decides how the routes are that it did not reach.
[[nodiscard]] Wording deadHeadWording(bool wasReset);

/// The open legs as a list: route, run, leg, what is missing.
[[nodiscard]] table::TextTable openLegsTable(const DeadHeadOutcome& outcome,
                                             ado::Connection& routing);

/// When all routes were last calculated, and whether a calculation is due since.
[[nodiscard]] std::string lastCalculation(ado::Connection& routing);

}  // namespace groupops
