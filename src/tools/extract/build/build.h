#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "platform/geo/projection.h"
#include "streets/base/streetmap.h"
#include "tools/extract/read/extract.h"

namespace tools::extract {

/// A house of a district's own address table.
struct Address {
    std::string number;
    std::string street;
    geo::Feet at;
};

struct BuiltStreets {
    streets::StreetMap map;
    std::size_t turnRules = 0;  ///< in the extract, about streets that buses drive
    std::size_t turnRulesTaken = 0;
    std::size_t unreachable = 0;  ///< pieces that a bus may drive and does not get to, or from
};

/// Makes the streets of a district from an extract: on its plane, cut, joined and thinned, with the
/// addresses beside those of the extract. The extract goes as soon as it is not needed any more.
[[nodiscard]] BuiltStreets streetsOf(Extract extract, const geo::Centre& centre,
                                     std::span<const Address> addresses);

/// Miles of streets that buses drive, each once.
[[nodiscard]] double milesOf(const streets::StreetMap& map);

}  // namespace tools::extract
