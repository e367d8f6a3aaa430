#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace streets {

/// What an order is to be judged by; the smaller the better. It is asked for parts of orders, too.
using OrderCost = std::function<double(std::span<const std::size_t>)>;

/// An order that no move of one to three neighbours (turned round or not) and no turning round of a
/// part makes better. Fixed stops keep their places.
[[nodiscard]] std::vector<std::size_t> improvedOrder(std::vector<std::size_t> order,
                                                     const std::vector<bool>& fixed,
                                                     const OrderCost& cost);

/// An order in which the stops that are not fixed were put in one after another, each where it cost
/// the least.
[[nodiscard]] std::vector<std::size_t> insertedOrder(std::size_t stops,
                                                     const std::vector<bool>& fixed,
                                                     const OrderCost& cost);

}  // namespace streets
