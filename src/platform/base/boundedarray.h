#pragma once

#include <array>
#include <cstddef>

#include "platform/base/error.h"

namespace base {

/// A fixed array with given bounds, both included (`BoundedArray<int, 1, 30>` holds 30). An index
/// outside them raises "Subscript out of range" (9).
template <class T, int Lower, int Upper>
class BoundedArray {
    static_assert(Lower <= Upper);

public:
    [[nodiscard]] static constexpr int lower() { return Lower; }
    [[nodiscard]] static constexpr int upper() { return Upper; }

    T& operator[](int index) { return items_[checked(index)]; }
    const T& operator[](int index) const { return items_[checked(index)]; }

    /// Sets every entry back to T{}.
    void erase() { items_.fill(T{}); }

private:
    static std::size_t checked(int index) {
        if (index < Lower || index > Upper) {
            raise(errors::SubscriptOutOfRange);
        }
        return static_cast<std::size_t>(index - Lower);
    }

    std::array<T, static_cast<std::size_t>(Upper - Lower + 1)> items_{};
};

}  // namespace base
