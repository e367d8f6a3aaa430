#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dbf/tablefile.h"
#include "runedit/map/requestline.h"
#include "tools/district/travel/directions.h"

namespace tools::map {

/// A run as the map sees it: its stops in order, with distances, times and directions along the
/// street grid.
class SolvedRun {
public:
    /// Solves the run of a request with the stops of its export. Raises base::RunTimeError for an
    /// export that lacks a column, or a request without times.
    SolvedRun(const runedit::RequestLine& request, const dbf::Table& stops);
    SolvedRun(const SolvedRun&) = delete;  // the run points at the stops beside it
    SolvedRun& operator=(const SolvedRun&) = delete;

    [[nodiscard]] const district::Run& run() const { return run_; }
    /// The sequence number that a stop had in the export; `run()` counts anew.
    [[nodiscard]] std::int64_t sequence(std::size_t visit) const { return sequences_[visit]; }
    [[nodiscard]] std::vector<district::DirectionLine> directions() const;

private:
    district::Run run_;
    std::deque<district::Stop> stops_;
    std::deque<std::string> types_;
    std::vector<std::int64_t> sequences_;
};

/// The request for a run in a list; raises base::RunTimeError where there is none.
[[nodiscard]] runedit::RequestLine requestForRun(std::string_view list, std::string_view run);

}  // namespace tools::map
