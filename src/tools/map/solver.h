#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/dbf/tablefile.h"
#include "runedit/map/requestline.h"
#include "streets/solve/solve.h"

namespace tools::map {

/// A run as the map sees it: the stops of its export in their order, with distances, times and
/// directions on a network, which must outlive it.
class SolvedRun {
public:
    /// Solves the run of a request with the stops of its export; those of `rightSide` (ids) are
    /// served from the right. Raises base::RunTimeError for an export that lacks a column, a
    /// request without times, and a stop that cannot be served, which it names.
    SolvedRun(const runedit::RequestLine& request, const dbf::Table& stops,
              const streets::Network& network, const std::set<std::int64_t>& rightSide = {});

    [[nodiscard]] const std::string& id() const { return id_; }
    [[nodiscard]] const std::vector<streets::RunStop>& stops() const { return run_.stops; }
    /// The sequence number that a stop had in the export.
    [[nodiscard]] std::int64_t sequence(std::size_t stop) const { return sequences_[stop]; }
    [[nodiscard]] const streets::Solution& solution() const { return solution_; }

private:
    std::string id_;
    streets::RunToSolve run_;
    std::vector<std::int64_t> sequences_;
    streets::Solution solution_;
};

/// The ids of a run's stops that may only be served from the right-hand side.
[[nodiscard]] std::set<std::int64_t> rightSideStops(ado::Connection& routing, std::string_view run);

/// The request for a run in a list; raises base::RunTimeError where there is none.
[[nodiscard]] runedit::RequestLine requestForRun(std::string_view list, std::string_view run);

}  // namespace tools::map
