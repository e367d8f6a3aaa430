#pragma once

#include <string>
#include <vector>

#include "groupops/belltime/bellforecast.h"

/// The words for what a bell change will do.
namespace groupops {

/// The runs of all groups in figures.
struct BellOutlook {
    int rows = 0;      ///< groups in all
    int changing = 0;  ///< of them with a new bell
    int runs = 0;      ///< that will change
    int late = 0;      ///< runs to school that end after their new bell
    int early = 0;     ///< runs home that start before it
    std::vector<RunForecast> leftOut = {};

    [[nodiscard]] bool isFine() const { return late + early == 0 && leftOut.empty(); }
};

[[nodiscard]] BellOutlook outlookOf(const std::vector<GroupForecast>& groups);

/// "27 runs in 3 of 8 rows will change."
[[nodiscard]] std::string countText(const BellOutlook& outlook);

/// A sentence that matters and what explains it.
struct BellWarning {
    std::string headline;
    std::string explanation = {};
};
/// What will be wrong, by which choice, and what would cure it. `other` is what comes of the same
/// bells calculated from the other end.
[[nodiscard]] std::vector<BellWarning> warningsOf(const BellOutlook& outlook,
                                                  const BellMethod& method,
                                                  const BellOutlook& other);
/// "No run leaves school before the bell.  There is no undo."
[[nodiscard]] std::string restText(const BellOutlook& outlook);
/// "27 runs will change, 18 arrive after their bell"
[[nodiscard]] std::string shortText(const BellOutlook& outlook);

/// Of one group: "9 of 9 late", "none late".
[[nodiscard]] std::string judgementText(const GroupForecast& group);
/// Of one run: "26 min after", "at the bell".
[[nodiscard]] std::string againstBellText(const RunForecast& run);

}  // namespace groupops
