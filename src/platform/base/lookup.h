#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>

namespace base {

/// What a short table of pairs says of a key; `otherwise` where the key is not in it.
template <class Key, class Found, std::size_t N>
constexpr Found lookUp(const std::pair<Key, Found> (&table)[N], std::type_identity_t<Key> key,
                       std::type_identity_t<Found> otherwise) {
    const auto row = std::ranges::find(table, key, &std::pair<Key, Found>::first);
    return row == std::end(table) ? std::move(otherwise) : row->second;
}

}  // namespace base
