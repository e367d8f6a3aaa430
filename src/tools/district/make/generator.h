#pragma once

#include <cstdint>

#include "tools/district/travel/model.h"

namespace tools::district {

/// What a generated district of so many runs holds.
struct Sizes {
    std::int64_t runs = 0;
    std::int64_t stops = 0;       ///< 7.5 a run
    std::int64_t stopTrips = 0;   ///< 20 a run
    std::int64_t students = 0;    ///< 10 a run
    std::int64_t logEntries = 0;  ///< 50 a run
    std::int64_t routes = 0;      ///< one for 5 runs

    [[nodiscard]] static Sizes forRuns(std::int64_t runs);
};

inline constexpr std::int64_t MostRuns = 200'000;

/// An invented district, always the same for a number of runs (1 to MostRuns) and a seed. Half of
/// the runs bring students to school, the others take the same students home; thirty of each serve
/// one school at one bell.
[[nodiscard]] District generateDistrict(std::int64_t runs, std::uint64_t seed);

}  // namespace tools::district
