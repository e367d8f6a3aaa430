#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ado/connection.h"
#include "platform/base/boundedarray.h"
#include "platform/base/value.h"

namespace groupops {

/// The runs of one school that honour one bell time.
struct BellGroup {
    static constexpr int MaxRuns = 30;

    std::string school;
    std::string bellTime;  ///< as text, "8:00:00 AM"; a single blank for runs without a bell time
    int runCount = 0;
    base::BoundedArray<std::string, 1, MaxRuns> runs;  ///< run ids; 1 to runCount are filled
};

/// The runs of a selection by school and bell time, numbered from 1. Fixed bounds: 300 groups of 30
/// runs.
class BellGroups {
public:
    static constexpr int MaxGroups = 300;

    /// Adds the next run in the order of school and bell time (Null for none). A school or bell
    /// time that differs from the run's before it begins a group. Raises SubscriptOutOfRange for a
    /// run beyond either bound.
    void add(std::string_view school, const base::Value& bellTime, std::string_view run);

    [[nodiscard]] int count() const { return count_; }
    /// Raises SubscriptOutOfRange beyond the bounds.
    const BellGroup& operator[](int group) const { return groups_[group]; }

private:
    base::BoundedArray<BellGroup, 1, MaxGroups> groups_;
    int count_ = 0;
};

/// Runs of one school at one bell time.
struct BellCrowd {
    std::string school;
    std::string bellTime;  ///< as in BellGroup
    int runs = 0;
};

/// How many groups the runs of a query would fill.
struct BellExtent {
    int groups = 0;
    std::optional<BellCrowd> crowd = {};  ///< the first group with more runs than one holds

    [[nodiscard]] bool fits() const { return groups <= BellGroups::MaxGroups && !crowd; }
};

/// Counts what readBellGroups would read, whatever the bounds. Raises what the query raises.
[[nodiscard]] BellExtent bellExtent(ado::Connection& routing, const std::string& runsSql);

/// Adds the runs of a query, which has no ORDER BY clause, to `groups`. Raises what the query and
/// BellGroups::add raise.
void readBellGroups(ado::Connection& routing, const std::string& runsSql, BellGroups& groups);

}  // namespace groupops
