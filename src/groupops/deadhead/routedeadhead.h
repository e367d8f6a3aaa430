#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "groupops/deadhead/deadheadlegs.h"
#include "platform/ado/recordset.h"

namespace groupops {

/// The two databases that dead-head is worked out from.
struct DeadHeadData {
    ado::Connection& routing;  ///< routes and runs, which get the results
    ado::Connection& cross;    ///< travel between two stops
};

/// An internal id; 0 for Null. Raises Overflow beyond 32 bits.
[[nodiscard]] std::int32_t internalId(const ado::Field& field);

/// Travel between two stops, stored either way round; of several records the first one returned
/// counts. Without a record for the pair any record of a way to `a` is taken, whatever its other
/// end: meant as it is. Raises Overflow, store::StoreError.
[[nodiscard]] Travel readTravel(ado::Connection& cross, std::int32_t a, std::int32_t b);

/// A leg that has no figures, or no time it starts at.
struct OpenLeg {
    enum class Side { Before, After };
    enum class Lack {
        Stop,         ///< the garage's, first or last stop is not set
        Travel,       ///< no travel record
        Time,         ///< the run has no start or end time
        TooManyRuns,  ///< the whole route: it was not calculated
    };

    std::string run = {};
    Side side = Side::Before;
    Lack lack = Lack::Travel;
    Leg leg = {};
    std::int64_t runsOfRoute = 0;  ///< where these are too many
};

/// What runsOfRoute and calculateRoute ask first; nothing that they write concerns it.
[[nodiscard]] std::vector<std::string> readsOfRoute(std::int32_t route);

[[nodiscard]] std::int64_t runsOfRoute(ado::Connection& routing, std::int32_t route);

/// Works out the dead-head of all runs of a route and writes it into them, as one unit of work;
/// what is missing is written as NoTravel or NoStop. Returns the legs that could not be calculated:
/// without one, every run has its values.
///
/// Raises SubscriptOutOfRange (9) for the 51st run, Overflow, store::StoreError.
std::vector<OpenLeg> calculateRoute(const DeadHeadData& data, std::int32_t route,
                                    std::int32_t garage);

}  // namespace groupops
