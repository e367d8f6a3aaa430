#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/date.h"
#include "runedit/validation/checkedrun.h"
#include "runedit/validation/finding.h"
#include "runedit/validation/stoprows.h"

/// The rules of a run. Each is a plain function of rows, and a check that reads the stored run's
/// rows for it. Beside a check stand the statements that it opens of the routing file, as far as
/// the run itself decides them.
namespace runedit {

// ---- Check_NumPassengers

struct PassengerCount {
    Findings findings;
    std::int16_t total = 0;  ///< passengers of all stops
};

/// Rule: nobody rides without a seat (`capacity` of the run). Counts the passengers from stop to
/// stop in the order given and finds every stop up to which there are more than seats; as many as
/// seats are accepted. Raises "Overflow" (6) where the count leaves 16 bits.
[[nodiscard]] PassengerCount countPassengers(const CheckedRun& run, const StopRows& regularStops);

/// The total becomes the run's Total_Students.
/// Cost: one statement for the stops, one for the run, and a write where the total is a new one.
[[nodiscard]] Findings Check_NumPassengers(const CheckedRun& run,
                                           const ValidationDatabases& databases);
[[nodiscard]] std::vector<std::string> passengerReads(const CheckedRun& run);

// ---- Check_RightSide

/// Rule: a stop that is marked for it is served from the right-hand side only. The finding about
/// such a stop that a run serves from elsewhere.
[[nodiscard]] Finding servedFromTheLeft(const StopRow& stop);

/// Finds the regular stops that the run does not serve from the right although they are marked. A
/// stop whose side is unknown (Null) is not looked at.
/// Cost: one statement for the stops, one more for each stop that is not served from the right.
[[nodiscard]] Findings Check_RightSide(const CheckedRun& run, const ValidationDatabases& databases);
[[nodiscard]] std::vector<std::string> rightSideReads(const CheckedRun& run);

// ---- Check_Run_EarlyBellTime, Check_Run_LateBellTime

/// Rule: a run that takes students home does not leave before the bell. Finds every stop whose time
/// is strictly earlier than the bell's time of day; a time that is missing counts as midnight. The
/// stop's date counts, so that a run that drives past midnight is understood.
[[nodiscard]] Findings earlierThanBell(const StopRows& stops, base::Date bell);
/// Rule: a run that brings students to school arrives by the bell. The same of later times.
[[nodiscard]] Findings laterThanBell(const StopRows& stops, base::Date bell);

/// For the stops but turn points of a run that takes students home and has a bell; the other one
/// for a run to school. Cost: one statement.
[[nodiscard]] Findings Check_Run_EarlyBellTime(const CheckedRun& run,
                                               const ValidationDatabases& databases);
[[nodiscard]] std::vector<std::string> earlyBellReads(const CheckedRun& run);
[[nodiscard]] Findings Check_Run_LateBellTime(const CheckedRun& run,
                                              const ValidationDatabases& databases);
[[nodiscard]] std::vector<std::string> lateBellReads(const CheckedRun& run);

// ---- Check_Run_RideTime

/// Rule: nobody rides longer than the district allows. Finds every stop with more minutes ridden
/// than `maximum`; as many are accepted.
[[nodiscard]] Findings ridesTooLong(const StopRows& stops, std::int16_t maximum);

/// For the stops but turn points, with the district's MaxRideTime (minutes; none is 0). Raises
/// "Overflow" (6) for a maximum beyond 16 bits.
/// Cost: one statement for the maximum, one for the stops.
[[nodiscard]] Findings Check_Run_RideTime(const CheckedRun& run,
                                          const ValidationDatabases& databases);
[[nodiscard]] std::vector<std::string> rideTimeReads(const CheckedRun& run);

// ---- Check_SpecialNeeds

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

/// Cost: one statement for the vehicle type, one for the stops and one for each of them.
[[nodiscard]] Findings Check_SpecialNeeds(const CheckedRun& run,
                                          const ValidationDatabases& databases);
[[nodiscard]] std::vector<std::string> specialNeedsReads(const CheckedRun& run);

// ---- Check_StopTimeConflict

/// The stops of a run whose times can be compared.
inline constexpr int MaxComparedStops = 100;

/// Rule: a run arrives at each stop later than at the ones before. Finds every pair of stops where
/// the one that comes first in sequence has the same or a later time of day; a stop without a time
/// is in no pair. Raises "Subscript out of range" (9) for a 101st stop.
[[nodiscard]] Findings conflictingTimes(const StopRows& stopsInSequence);

/// For the stops but turn points.
/// Cost: one statement, and half the square of the stops in comparisons.
[[nodiscard]] Findings Check_StopTimeConflict(const CheckedRun& run,
                                              const ValidationDatabases& databases);
[[nodiscard]] std::vector<std::string> stopTimeReads(const CheckedRun& run);

}  // namespace runedit
