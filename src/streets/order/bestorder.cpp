#include "streets/order/bestorder.h"

#include <algorithm>
#include <limits>

namespace streets {

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr std::size_t Nowhere = std::numeric_limits<std::size_t>::max();

/// The costs of being at halts, and how they were come by.
struct Arrivals {
    std::vector<std::size_t> halts;
    std::vector<double> costs;
};

/// Stops that stand side by side in the run and may change places; one alone is a fixed stop, too.
class Segment {
public:
    Segment(const StopCosts& costs, std::vector<std::size_t> stops)
        : costs_(costs), stops_(std::move(stops)) {
        for (std::size_t i = 0; i < stops_.size(); ++i) {
            for (std::size_t halt = costs.firstHalt(stops_[i]); halt < costs.endHalt(stops_[i]);
                 ++halt) {
                halts_.push_back(halt);
                stopOf_.push_back(i);
            }
        }
        cells_.assign(halts_.size() << stops_.size(), {});
    }

    /// Orders the stops behind those arrivals, or as the first ones of the run where there are
    /// none.
    Arrivals follow(const Arrivals& before, const OrderEnds& ends) {
        begin(before, ends.first);
        for (std::size_t set = 1; set < full(); ++set) {
            for (std::size_t halt = 0; halt < halts_.size(); ++halt) {
                if (cell(set, halt).cost < Infinity) {
                    leave(set, halt, ends.last);
                }
            }
        }
        Arrivals arrivals{halts_, {}};
        for (std::size_t halt = 0; halt < halts_.size(); ++halt) {
            arrivals.costs.push_back(cell(full(), halt).cost);
        }
        return arrivals;
    }

    /// Puts the stops on the way to a halt before `order`; which of the arrivals before it began
    /// at.
    std::size_t trace(std::size_t halt, std::vector<std::size_t>& order) const {
        std::size_t set = full();
        while (true) {
            order.push_back(stops_[stopOf_[halt]]);
            const std::size_t previous = cell(set, halt).previous;
            set &= ~bit(halt);
            if (set == 0) {
                return previous;
            }
            halt = previous;
        }
    }

private:
    struct Cell {
        double cost = Infinity;
        std::size_t previous = Nowhere;
    };

    [[nodiscard]] std::size_t full() const { return (std::size_t{1} << stops_.size()) - 1; }
    [[nodiscard]] std::size_t bit(std::size_t halt) const {
        return std::size_t{1} << stopOf_[halt];
    }
    [[nodiscard]] Cell& cell(std::size_t set, std::size_t halt) {
        return cells_[set * halts_.size() + halt];
    }
    [[nodiscard]] const Cell& cell(std::size_t set, std::size_t halt) const {
        return cells_[set * halts_.size() + halt];
    }
    [[nodiscard]] bool is(std::optional<std::size_t> wanted, std::size_t halt) const {
        return !wanted || *wanted == stops_[stopOf_[halt]];
    }

    void improve(std::size_t set, std::size_t halt, double cost, std::size_t previous) {
        Cell& found = cell(set, halt);
        if (cost < found.cost) {
            found = {cost, previous};
        }
    }

    void begin(const Arrivals& before, std::optional<std::size_t> first) {
        for (std::size_t halt = 0; halt < halts_.size(); ++halt) {
            if (!is(first, halt)) {
                continue;
            }
            if (before.halts.empty()) {
                improve(bit(halt), halt, 0, Nowhere);
            }
            for (std::size_t i = 0; i < before.halts.size(); ++i) {
                improve(bit(halt), halt,
                        before.costs[i] + costs_.cost(before.halts[i], halts_[halt]), i);
            }
        }
    }

    void leave(std::size_t set, std::size_t from, std::optional<std::size_t> last) {
        for (std::size_t to = 0; to < halts_.size(); ++to) {
            const std::size_t next = set | bit(to);
            if (next != set && (next != full() || is(last, to))) {
                improve(next, to, cell(set, from).cost + costs_.cost(halts_[from], halts_[to]),
                        from);
            }
        }
    }

    const StopCosts& costs_;
    std::vector<std::size_t> stops_;
    std::vector<std::size_t> halts_;
    std::vector<std::size_t> stopOf_;
    std::vector<Cell> cells_;
};

std::optional<std::size_t> among(const std::vector<std::size_t>& stops,
                                 std::optional<std::size_t> stop) {
    const bool isThere = stop && std::ranges::find(stops, *stop) != stops.end();
    return isThere ? stop : std::nullopt;
}

}  // namespace

std::vector<std::size_t> bestOrder(const StopCosts& costs, const std::vector<bool>& fixed,
                                   const OrderEnds& ends) {
    std::vector<Segment> segments;
    std::vector<Arrivals> arrivals{{}};
    for (std::size_t i = 0; i < costs.stops();) {
        std::vector<std::size_t> stops{i};
        const bool isFree = !fixed[i];
        for (++i; isFree && i < costs.stops() && !fixed[i]; ++i) {
            stops.push_back(i);
        }
        const OrderEnds own{among(stops, ends.first), among(stops, ends.last)};
        segments.emplace_back(costs, std::move(stops));
        arrivals.push_back(segments.back().follow(arrivals.back(), own));
    }
    const auto& last = arrivals.back().costs;
    const auto best = std::ranges::min_element(last);
    if (best == last.end() || *best == Infinity) {
        return {};
    }
    std::vector<std::size_t> order;
    auto halt = static_cast<std::size_t>(best - last.begin());
    for (std::size_t i = segments.size(); i-- > 0;) {
        halt = segments[i].trace(halt, order);
    }
    std::ranges::reverse(order);
    return order;
}

}  // namespace streets
