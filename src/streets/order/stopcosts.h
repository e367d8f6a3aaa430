#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "streets/solve/halts.h"

namespace streets {

/// What it costs to come from one stop's halts to another one's.
class StopCosts {
public:
    /// The halts of each stop, in the order of the run, and the run that they are of.
    StopCosts(const Network& network, const RunToSolve& run, std::span<const StopHalts> stops);

    [[nodiscard]] std::size_t stops() const { return firstHalt_.size() - 1; }
    [[nodiscard]] std::size_t halts() const { return firstHalt_.back(); }
    /// A stop's halts are the numbers from the first one to the one before the next stop's.
    [[nodiscard]] std::size_t firstHalt(std::size_t stop) const { return firstHalt_[stop]; }
    [[nodiscard]] std::size_t endHalt(std::size_t stop) const { return firstHalt_[stop + 1]; }
    /// Seconds at the one halt and of the way to the other one.
    [[nodiscard]] double cost(std::size_t from, std::size_t to) const {
        return costs_[from * halts() + to];
    }

    /// The cost of an order of at least one stop, with the best halts.
    [[nodiscard]] double costOf(std::span<const std::size_t> order) const;

private:
    std::vector<std::size_t> firstHalt_;
    std::vector<double> costs_;
};

}  // namespace streets
