#pragma once

#include <string>
#include <string_view>

#include "tools/district/make/random.h"

namespace tools::district {

/// Invented people and places; none is anybody's.
[[nodiscard]] std::string_view firstName(Random& random);
[[nodiscard]] std::string_view lastName(Random& random);

struct SchoolName {
    std::string code;
    std::string name;
};

/// The name of the school of that number (from 0) and type ("HS", "MS", "ELEM", "PK"); no two
/// numbers share a code.
[[nodiscard]] SchoolName schoolName(std::size_t number, std::string_view type);

/// The town of a place: one of four, by the quarter of the map.
struct Town {
    std::string_view name;
    std::string_view zip;
    std::string_view location;  ///< location code
};
inline constexpr std::string_view State = "KS";
[[nodiscard]] const Town& townOf(bool east, bool north);
[[nodiscard]] const Town& townOf(std::string_view location);

}  // namespace tools::district
