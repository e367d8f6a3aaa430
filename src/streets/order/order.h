#pragma once

#include <cstddef>
#include <vector>

#include "streets/solve/solve.h"

namespace streets {

/// What an order of stops must keep; 0 sets no limit.
struct OrderLimits {
    int seats = 0;
    double rideMinutes = 0;  ///< of the student who rides the longest
};

/// An order of a run's stops and what it comes to.
struct StopOrder {
    std::vector<std::size_t> stops = {};  ///< places in the run as given, from 0
    double minutes = 0;                   ///< from the first stop to the last
    double miles = 0;
    double longestRideMinutes = 0;
    int mostOnBus = 0;
};

struct OrderSuggestion {
    StopOrder today = {};
    StopOrder suggested = {};             ///< today's where none is quicker
    bool isBest = false;                  ///< no order is quicker for certain
    bool keepsLimits = true;              ///< the suggested one does
    std::vector<Unserved> unserved = {};  ///< where there are some, nothing is suggested
};

/// A quicker order of the run's stops. The stops marked as fixed (schools, garages) stay where they
/// are and no other stop passes them, and the first or last stop, whichever is the school, always
/// does; a turn point stays before the stop that it led to. Up to twelve stops the best order,
/// above the best of many moves.
[[nodiscard]] OrderSuggestion suggestOrder(const Network& network, const RunToSolve& run,
                                           const std::vector<bool>& fixed,
                                           const OrderLimits& limits);

}  // namespace streets
