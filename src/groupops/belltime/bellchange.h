#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "groupops/base/outcome.h"
#include "groupops/belltime/bellanchor.h"
#include "groupops/belltime/bellgroups.h"
#include "platform/ado/connection.h"
#include "platform/base/ports.h"
#include "runedit/times/storedstoptimes.h"

namespace groupops {

/// What is to be changed. `newBells` has a time of day for each group that changes; the first entry
/// is group 1's, groups behind the last one stay.
struct BellChange {
    const BellGroups& groups;
    std::vector<std::optional<base::Date>> newBells;
    BellMethod method;
};

/// The first school that would have more runs at one bell time after the change than a group holds:
/// its groups could not be built again.
[[nodiscard]] std::optional<BellCrowd> crowdAfter(const BellChange& change);

/// The new bell time of a group as a time of day; nothing where it stays.
[[nodiscard]] std::optional<base::Date> newBellOf(const BellChange& change, int group);

inline constexpr auto ChangingBells = "*** Changing Bell Times ***";

/// Where a bell change reports to.
struct BellReport {
    base::ProgressPort& runs;                    ///< percent of the present group's runs
    std::function<void(double percent)> groups;  ///< of all groups
    runedit::LogLine log = {};                   ///< see runedit::writeStops
};

/// Gives the runs of the groups their new bell time, computes and writes all their stop times, and
/// writes start, end and the audit columns. A run is one unit of work. Runs that are gone, that
/// have no end time to keep a gap from, or a stop without its minutes, are left out; see GroupLoop.
///
/// Raises what runedit::timeStoredStops raises, store::StoreError; what was written until then
/// stays.
Outcome changeBellTimes(ado::Connection& routing, const BellChange& change,
                        const BellReport& report);

}  // namespace groupops
