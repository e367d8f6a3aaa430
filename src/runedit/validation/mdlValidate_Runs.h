#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "runedit/validation/checkedrun.h"

namespace runedit {

/// Validates one stored run: makes the checks that both the district and the caller want, and
/// replaces the warnings of each check that is made. Warnings of a check that is not made stay.
///
/// | Place | District column | Warning type | Finds |
/// |---|---|---|---|
/// | 2 | CHECKRUNNUMPASS | PASSENGERS | more passengers than seats |
/// | 3 | CHECKRUNRIGHT | RIGHTSIDE | right-side stops served from the left |
/// | 4 | CHECKRUNEARLYBELL | EARLY BELL | a run home that leaves before the bell |
/// | 5 | CHECKRUNLATEBELL | LATE BELL | a run to school that arrives after the bell |
/// | 6 | CHECKRUNRIDETIME | RIDETIME | rides longer than the district allows |
/// | 7 | CHECKRUNSPECIAL | SPECIAL | special needs that the vehicle type cannot carry |
/// | 8 | CHECKSTOPOVERLAP | CONFLICTING TIME | stops in sequence whose times are not |
///
/// `Switches`: "Y" and whatever follows asks for all; otherwise a "Y" at the place asks for the
/// check. With `IntRouteID` other than 0, PASSENGERS and SPECIAL are recorded for that route.
/// `ShowMessages` shows the findings of each check in a message box; a vehicle type that does not
/// exist is told in any case.
///
/// Returns a flag for each place: "Y" at 1 where anything was found and at the place of each check
/// that found something, otherwise "N". The passengers' check also refreshes the run's
/// Total_Students.
///
/// Raises "Subscript out of range" (9) for more than 100 stops or 50 special needs, "Overflow" (6)
/// for more than 32,767 passengers, what the databases raise; all of it under the error trap. All
/// checks are one unit of work: the checks before one that fails stay recorded.
std::string CheckRun(const std::string& Run, std::int64_t IntRouteID, bool ShowMessages,
                     const std::string& Switches);

/// The same for a form, with messages and without a route: a run with more stops than CONFLICTING
/// TIME takes gets all other checks, and the planner is told.
std::string checkRunOfAnyLength(const std::string& run, const std::string& switches);

/// What it asks before it begins to check, as far as the run is found as before: for who asks
/// several questions at once (ado::ReadAhead).
[[nodiscard]] RunReads readsOfCheck(const CheckedRun& foundBefore);

}  // namespace runedit
