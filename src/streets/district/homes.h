#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geo/projection.h"

namespace streets {

/// A district's list of homes, beside its databases.
inline constexpr const char* HomesFile = "homes.csv";

/// Where a student lives, in the district's feet.
struct Home {
    std::string student = {};  ///< the id by which the district knows the student; may be empty
    geo::Feet at = {};
    std::string address = {};  ///< as the district gave it; may be empty
};

struct HomeList {
    std::vector<Home> homes;
    std::vector<std::string> faults;  ///< a sentence for each line that is not understood
};

/// The list as its file holds it: a heading, then a line of values for each home.
[[nodiscard]] std::string textOf(std::span<const Home> homes);
[[nodiscard]] HomeList homesIn(std::string_view text);

/// The homes beside a district's databases; none where it has no list. Raises base::RunTimeError
/// for a file that may not be read.
[[nodiscard]] std::vector<Home> readHomes(const std::string& folder);

}  // namespace streets
