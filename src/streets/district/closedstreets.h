#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geo/projection.h"
#include "streets/base/streetmap.h"

namespace streets {

/// Streets that no bus drives for a while. The list is a text of lines for people to edit, fields
/// apart by semicolons, "#" before what is no entry:
///
///     Fourth Street; Hudson Street; Arcadia Avenue; bridge works until May
///     Wall Street
///     Weber Road; 1843.5 -2210; ; where a map was clicked
///
/// that is a street from one crossing to another one, a whole street, and the piece at a place in
/// the district's feet. The last field is a note.
struct ClosedStreet {
    std::string street = {};              ///< may be empty beside a place
    std::string from = {};                ///< crossing streets; both or none
    std::string to = {};                  ///< see from
    std::optional<geo::Feet> place = {};  ///< in the place of both
    std::string note = {};
};

struct ClosedStreetList {
    std::vector<ClosedStreet> streets;
    std::vector<std::string> faults;  ///< a sentence for each line that is not understood
};

/// The entry as a line of the list, without a line end.
[[nodiscard]] std::string lineOf(const ClosedStreet& closed);
[[nodiscard]] ClosedStreetList closedStreetsIn(std::string_view text);

/// The pieces that an entry closes, in both directions; empty where it names no street of the map.
[[nodiscard]] std::vector<std::uint32_t> closedPieces(const StreetMap& map,
                                                      const ClosedStreet& closed);

}  // namespace streets
