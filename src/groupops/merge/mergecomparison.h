#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "groupops/base/seats.h"
#include "groupops/merge/runmerge.h"
#include "runedit/validation/checkedrun.h"

namespace groupops {

/// One thing of two runs, side by side.
struct MergeLine {
    enum class Verdict {
        NotJudged,
        Like,
        Unlike,  ///< the stops would stand on a run that they were not made for
    };

    std::string thing;  ///< "Trip type"
    std::string source;
    std::string receiving;
    Verdict verdict = Verdict::NotJudged;
};

/// Two runs before their merge, and the one that will come of it.
struct MergeComparison {
    bool complete = false;  ///< both runs are there
    std::vector<MergeLine> lines = {};
    std::int64_t stopsAfter = 0;
    std::int64_t passengersAfter = 0;
    std::optional<std::int64_t> seats = {};  ///< of the receiving run; nothing where not known

    /// What of the two is unlike, in the order of the lines: "trip type".
    [[nodiscard]] std::vector<std::string> unlike() const;
    [[nodiscard]] const MergeLine& line(const std::string& thing) const;
    [[nodiscard]] std::int64_t tooMany() const;
};

/// Compares two runs as they are stored; nothing where the receiving one is not. Without a source
/// nothing is judged. Passengers are counted from the stops. Raises store::StoreError.
[[nodiscard]] std::optional<MergeComparison> compareForMerge(
    const runedit::ValidationDatabases& databases, const RunMerge& merge, const SeatsOf& seatsOf);

/// What a question about the merge concerns: the stops and both runs with their schools.
[[nodiscard]] std::string concernsOf(const MergeComparison& comparison, const RunMerge& merge);

}  // namespace groupops
