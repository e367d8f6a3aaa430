#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>
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

/// A route as its dead-head needs it.
struct RouteKey {
    std::string routeId;     ///< as planners know it
    std::int32_t route = 0;  ///< its internal id
    std::int32_t garage = 0;
};

/// The dead-head of routes, one after the other. What they have in common is read once, when this
/// is made.
class RouteCalculation {
public:
    explicit RouteCalculation(const DeadHeadData& data);

    /// Reads the travel of several routes together where the store gains by that. What a route
    /// needs besides when its turn comes, since its runs were changed meanwhile, it asks for
    /// itself. Raises nothing: so does it where this fails.
    void readTravelOf(std::span<const RouteKey> routes);

    /// What `calculate` asks first; nothing that it writes concerns it.
    [[nodiscard]] static std::vector<std::string> readsOf(std::int32_t route);

    /// Works out the dead-head of all runs of a route and writes it into them, as one unit of work;
    /// what is missing is written as NoTravel or NoStop. Returns the legs that could not be
    /// calculated: without one, every run has its values. A route with too many runs is left as it
    /// is; one that a fault ends is cleared.
    ///
    /// Raises Overflow, store::StoreError.
    std::vector<OpenLeg> calculate(std::int32_t route, std::int32_t garage);

private:
    using Pair = std::pair<std::int32_t, std::int32_t>;

    [[nodiscard]] static Pair pairOf(Leg leg) { return std::minmax({leg.from, leg.to}); }
    void readLegs(std::span<const Leg> legs);
    [[nodiscard]] std::vector<std::string> readsOfUnknown(std::span<const Leg> legs) const;
    [[nodiscard]] Travel travelOf(Leg leg) const;
    [[nodiscard]] PerRun<RunDeadHead> deadHeadOfRuns(const PerRun<RouteRun>& runs,
                                                     const PerRun<RunLegs>& legs, int count) const;

    DeadHeadData data_;
    double gap_;                    ///< minutes
    std::map<Pair, Travel> known_;  ///< read together, either way round
};

/// The same for one route, which is cleared where it has too many runs: SubscriptOutOfRange (9) is
/// raised then.
std::vector<OpenLeg> calculateRoute(const DeadHeadData& data, std::int32_t route,
                                    std::int32_t garage);

}  // namespace groupops
