#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "groupops/belltime/bellchange.h"
#include "platform/ado/connection.h"

/// What a bell change will do, told before anything is written.
namespace groupops {

/// Start and end of a run. Nothing stands for Null.
struct RunTimes {
    std::optional<base::Date> start = {};
    std::optional<base::Date> end = {};
};

/// What will become of a run.
struct RunForecast {
    enum class Verdict {
        Fine,
        Late,     ///< a run to school that ends after the new bell
        Early,    ///< a run home that starts before it
        LeftOut,  ///< it stays as it is, see `why`
    };

    std::string run = {};
    std::string description = {};
    RunTimes now = {};
    RunTimes after = {};  ///< not of a run that is left out
    Verdict verdict = Verdict::Fine;
    /// From the new bell to the end of a run to school, to the start of a run home.
    std::int64_t secondsAfterBell = 0;
    std::string why = {};
};

struct GroupForecast {
    std::vector<RunForecast> runs = {};  ///< none where the group's bell stays

    [[nodiscard]] int count(RunForecast::Verdict verdict) const;
};

/// Foretells bell changes of the same groups over and over. The runs of a group are read when it is
/// first asked for, and their times computed as the change does it.
class BellForecaster {
public:
    /// Both outlive it.
    BellForecaster(ado::Connection& routing, const BellGroups& groups)
        : routing_(routing), groups_(groups) {}

    /// For each group, the first entry group 1's. Raises store::StoreError, Overflow.
    [[nodiscard]] std::vector<GroupForecast> forecast(const BellChange& change);

private:
    /// What was read of a run.
    struct Run {
        RunForecast known = {};  ///< id, description and the times now
        bool stored = false;
        BellRun bell = {};
        /// From its first stop to its last, timed from there and from here; nothing where a stop
        /// has no minutes.
        std::optional<std::int64_t> secondsForwards = {}, secondsBackwards = {};
    };
    using Group = std::vector<Run>;

    const Group& runsOf(int group);
    [[nodiscard]] Run read(const std::string& id) const;
    /// `gap` goes over from run to run.
    static RunForecast foretold(const Run& run, const BellMethod& method, base::Date bell,
                                std::int32_t& gap);

    ado::Connection& routing_;
    const BellGroups& groups_;
    std::map<int, Group> read_;
};

}  // namespace groupops
