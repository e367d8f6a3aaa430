#pragma once

#include <cstddef>
#include <cstdint>

namespace tools::district {

/// Pseudo-random numbers that are the same for a seed on every machine and compiler.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        state_ += 0x9e3779b97f4a7c15ULL;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9ULL;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebULL;
        return mixed ^ (mixed >> 31U);
    }

    /// A whole number from 0 to count - 1; count must be positive.
    std::size_t below(std::size_t count) { return next() % count; }
    /// A whole number from first to last, both included.
    std::int64_t between(std::int64_t first, std::int64_t last) {
        return first + static_cast<std::int64_t>(below(static_cast<std::size_t>(last - first + 1)));
    }
    /// A number from first up to, but not including, last.
    double uniform(double first, double last) {
        return first + (last - first) * static_cast<double>(next() >> 11U) * 0x1.0p-53;
    }
    /// True in `percent` of a hundred calls.
    bool chance(double percent) { return uniform(0, 100) < percent; }

    template <class Container>
    const auto& pick(const Container& items) {
        return items[below(items.size())];
    }

private:
    std::uint64_t state_;
};

}  // namespace tools::district
