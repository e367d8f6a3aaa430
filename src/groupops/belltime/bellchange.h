#pragma once

#include <functional>
#include <optional>
#include <string>
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

/// The runs that a school would have at one bell time.
struct BellCrowd {
    std::string school;
    std::string bellTime;  ///< "9:30:00 AM"
    int runs = 0;
};

/// The first school that would have more runs at one bell time after the change than a group holds:
/// its groups could not be built again.
[[nodiscard]] std::optional<BellCrowd> crowdAfter(const BellChange& change);

inline constexpr auto ChangingBells = "*** Changing Bell Times ***";

/// Where a bell change reports to.
struct BellReport {
    base::ProgressPort& runs;                    ///< percent of the present group's runs
    std::function<void(double percent)> groups;  ///< of all groups
    runedit::LogLine log = {};                   ///< see runedit::writeStops
};

/// Gives the runs of the groups their new bell time, computes and writes all their stop times, and
/// writes start, end and the audit columns. A run is one unit of work. Runs that are gone, or that
/// have no end time to keep a gap from, are left out; see GroupLoop.
///
/// Raises what runedit::timeStoredStops raises, store::StoreError; what was written until then
/// stays.
Outcome changeBellTimes(ado::Connection& routing, const BellChange& change,
                        const BellReport& report);

}  // namespace groupops
