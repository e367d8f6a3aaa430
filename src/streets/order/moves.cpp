#include "streets/order/moves.h"

#include <algorithm>
#include <iterator>

namespace streets {

namespace {

constexpr double Gain = 1e-3;  // seconds that are worth a move
constexpr std::size_t MostMoved = 3;

/// Places of stops that may change them among each other.
struct Places {
    std::size_t begin;
    std::size_t end;
};

std::vector<Places> freePlaces(const std::vector<bool>& fixed) {
    std::vector<Places> all;
    for (std::size_t i = 0; i < fixed.size(); ++i) {
        if (fixed[i]) {
            continue;
        }
        if (!all.empty() && all.back().end == i) {
            all.back().end = i + 1;
        } else {
            all.push_back({i, i + 1});
        }
    }
    return all;
}

auto at(std::vector<std::size_t>& order, std::size_t place) {
    return order.begin() + static_cast<std::ptrdiff_t>(place);
}

/// Tries moves and keeps those that help.
class Improver {
public:
    Improver(std::vector<std::size_t> order, const OrderCost& cost)
        : order_(std::move(order)), cost_(cost), best_(cost(order_)) {}

    /// Whether something has become better.
    bool tryAll(Places places) {
        const double before = best_;
        for (std::size_t from = places.begin; from < places.end; ++from) {
            for (std::size_t count = 1; count <= MostMoved && from + count <= places.end; ++count) {
                moveBlock(places, from, count);
            }
            for (std::size_t end = from + 2; end <= places.end; ++end) {
                auto trial = order_;
                std::reverse(at(trial, from), at(trial, end));
                keepIfBetter(std::move(trial));
            }
        }
        return best_ < before;
    }

    std::vector<std::size_t> order() { return std::move(order_); }

private:
    void moveBlock(Places places, std::size_t from, std::size_t count) {
        for (std::size_t to = places.begin; to + count <= places.end; ++to) {
            if (to == from) {
                continue;
            }
            auto trial = order_;
            if (to < from) {
                std::rotate(at(trial, to), at(trial, from), at(trial, from + count));
            } else {
                std::rotate(at(trial, from), at(trial, from + count), at(trial, to + count));
            }
            auto turned = trial;
            std::reverse(at(turned, to), at(turned, to + count));
            const bool isBetter = keepIfBetter(std::move(trial));
            if (keepIfBetter(std::move(turned)) || isBetter) {
                return;
            }
        }
    }

    bool keepIfBetter(std::vector<std::size_t> trial) {
        const double cost = cost_(trial);
        if (cost >= best_ - Gain) {
            return false;
        }
        best_ = cost;
        order_ = std::move(trial);
        return true;
    }

    std::vector<std::size_t> order_;
    const OrderCost& cost_;
    double best_;
};

void insertBest(std::vector<std::size_t>& order, Places places, std::size_t stop,
                const OrderCost& cost) {
    std::vector<std::size_t> best;
    double least = 0;
    for (std::size_t place = places.begin; place <= places.end; ++place) {
        auto trial = order;
        trial.insert(at(trial, place), stop);
        const double found = cost(trial);
        if (best.empty() || found < least) {
            least = found;
            best = std::move(trial);
        }
    }
    order = std::move(best);
}

}  // namespace

std::vector<std::size_t> improvedOrder(std::vector<std::size_t> order,
                                       const std::vector<bool>& fixed, const OrderCost& cost) {
    const auto all = freePlaces(fixed);
    Improver improver(std::move(order), cost);
    for (bool changed = true; changed;) {
        changed = false;
        for (const Places& places : all) {
            changed = improver.tryAll(places) || changed;
        }
    }
    return improver.order();
}

std::vector<std::size_t> insertedOrder(std::size_t stops, const std::vector<bool>& fixed,
                                       const OrderCost& cost) {
    std::vector<std::size_t> order;
    std::vector<std::size_t> free;
    Places places{0, 0};
    const auto insertFree = [&] {
        for (const std::size_t stop : free) {
            insertBest(order, places, stop, cost);
            ++places.end;
        }
        free.clear();
    };
    for (std::size_t i = 0; i < stops; ++i) {
        if (!fixed[i]) {
            free.push_back(i);
            continue;
        }
        // The fixed stop behind them has a say in where they are put.
        order.push_back(i);
        insertFree();
        places = {order.size(), order.size()};
    }
    insertFree();
    return order;
}

}  // namespace streets
