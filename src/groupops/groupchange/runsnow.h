#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "groupops/base/seats.h"
#include "groupops/groupchange/runchange.h"

namespace groupops {

/// What the runs of a selection have now in the columns that a group change can set.
class RunsNow {
public:
    /// Reads the runs; those that are gone are left out. Raises store::StoreError.
    RunsNow(ado::Connection& routing, std::span<const std::string> runs);

    [[nodiscard]] int count() const { return static_cast<int>(runs_.size()); }
    /// The values of a column with the number of their runs, the most frequent first: "all AM",
    /// "SW (3), NE (1)".
    [[nodiscard]] std::string text(std::string_view column) const;
    /// How many runs will carry more passengers than they have seats then; those without a known
    /// vehicle type do not count. Passengers are counted from the stops. Raises store::StoreError.
    [[nodiscard]] int tooFullAfter(std::span<const RunChange> changes, const SeatsOf& seatsOf);

private:
    static constexpr std::array<std::string_view, 7> Columns{
        "RunFamily", "LocCode", "School", "TripType", "VehType", "Capacity", "OverFill"};
    using Row = std::array<std::string, Columns.size()>;

    [[nodiscard]] static std::size_t indexOf(std::string_view column);
    void readRuns(std::span<const std::string> runs);
    void readPassengers();

    ado::Connection& routing_;
    std::unordered_map<std::string, Row> runs_;                      ///< by the id in small letters
    std::array<std::map<std::string, int>, Columns.size()> counts_;  ///< of each column's values
    std::optional<std::unordered_map<std::string, std::int64_t>> passengers_;
};

}  // namespace groupops
