#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/table/texttable.h"
#include "runedit/editor/stoptotals.h"

/// The four lists that the run editor shows of a run: its stops, its driving directions, its
/// warnings and its passengers' special needs. A run's id is trimmed and otherwise put into the
/// question as it is. The readers raise jet::SqlError and store::StoreError.
namespace runedit {

/// How much of the driving directions is shown.
enum class DirectionStyle {
    Detailed,   ///< every line
    Brief,      ///< start, turn back, direction, stop and total lines
    VeryBrief,  ///< start, direction, stop and total lines, in their short texts
};

/// The style of a choice as the editor offers it: "Very Brief", "Brief", anything else is Detailed.
[[nodiscard]] DirectionStyle directionStyle(std::string_view choice);

struct StopList {
    /// In the order of the run, without turn points; "ID" is the key of the stop's trip-type
    /// record. A stop without a place on the map (both co-ordinates 0 or missing) is all red.
    /// Behind the columns of the record stand "No.", "Map", which says of a red stop that it has no
    /// place, and "On the Bus"; see countAlongTheRun().
    table::TextTable table;
    /// The red rows: while there is one, the run cannot go to the map.
    std::vector<std::size_t> unplaced = {};
    StopTotals totals = {};
};
[[nodiscard]] StopList readStopList(ado::Connection& routing, std::string_view run,
                                    bool toSchool = true);

/// Line by line; the second text "SKIP" of a line that has neither distance nor time shows blank.
[[nodiscard]] table::TextTable readDirections(ado::Connection& routing, std::string_view run,
                                              DirectionStyle style);

/// What the four readers open, for who asks several questions at once (ado::ReadAhead).
[[nodiscard]] std::vector<std::string> listReads(std::string_view run, DirectionStyle style);

/// Newest first.
[[nodiscard]] table::TextTable readWarnings(ado::Connection& routing, std::string_view run);

/// The caption of the tab that holds the warnings.
[[nodiscard]] std::string warningsCaption(bool any);

/// One row a special need, with the number of the run's passengers who have it.
[[nodiscard]] table::TextTable readSpecialNeeds(ado::Connection& routing, std::string_view run);

}  // namespace runedit
