#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "runedit/validation/checkedrun.h"
#include "runedit/validation/finding.h"
#include "runedit/validation/stoprows.h"

namespace runedit {

/// How many passengers have a special need, or how many of them a vehicle type can carry.
struct NeedCount {
    std::string code;
    double count = 0;
};

/// A regular stop and the needs of its passengers.
struct StopNeeds {
    StopRow stop;
    std::vector<NeedCount> needs;
};

/// The separator of these findings has six blanks where the others' has seven: meant as it is.
inline constexpr std::string_view SpecialNeedsSeparator = "      *** ";

/// Rule: the vehicle type can carry every passenger with a special need. Finds, stop by stop, each
/// need that is not among `carried`, and each with more passengers on the run so far than can be
/// carried. Codes are compared without case and trailing blanks; blank ones are left out.
///
/// A need that can be carried is counted twice: also at its place among `carried` in the run's own
/// list of needs, which is another place unless the needs came up in that very order. A need that
/// first comes up later starts from its own count. Meant as it is.
///
/// Raises "Subscript out of range" (9) for a 51st need of the vehicle type or of the run.
[[nodiscard]] Findings needsNotMet(const CheckedRun& run, const std::vector<StopNeeds>& stops,
                                   const std::vector<NeedCount>& carried);

/// The needs of the passengers at each stop, in the order of their codes.
[[nodiscard]] std::vector<StopNeeds> readStopNeeds(const StopRows& regularStops,
                                                   ado::Connection& routing);
/// What a vehicle type can carry, as it is stored.
[[nodiscard]] std::vector<NeedCount> needsCarriedBy(const std::string& vehType,
                                                    ado::Connection& trip);
/// The statement that it opens.
[[nodiscard]] std::string needsCarriedSql(std::string_view vehType);

/// The same for the stored run. A stop's needs are taken in the order of their codes.
/// Cost: one statement for the vehicle type, one for the stops and one for each of them.
[[nodiscard]] Findings Check_SpecialNeeds(const CheckedRun& run,
                                          const ValidationDatabases& databases);
/// The statements that it opens of the routing file, as far as the run itself decides them.
[[nodiscard]] std::vector<std::string> specialNeedsReads(const CheckedRun& run);

}  // namespace runedit
