#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/geo/projection.h"
#include "tools/district/import/feed/transitfeed.h"

namespace tools::district {

struct SchoolTripOptions {
    std::vector<std::size_t> trips;  ///< that become runs, by their places in the feed
    bool sharedStops = false;        ///< a place that several runs use is one stop, for transfers
    std::optional<geo::Centre> centre = {};  ///< of the district's plane, where it has one
    /// Run ids by trip ids, of an earlier import.
    std::map<std::string, std::string> knownRuns = {};
};

/// A feed's trips as the files of runs that an import takes.
struct SchoolRuns {
    std::string schools;
    std::string stops;
    std::string routes;
    std::string runs;
    std::string runStops;
    std::vector<std::string> remarks;  ///< what was joined, guessed or left out
    std::size_t count = 0;
    geo::Centre centre;

    /// "schools.csv", …; raises base::RunTimeError.
    void writeTo(const std::filesystem::path& folder) const;
};

/// A trip of several services is one run on all their days; a weekday counts where the service runs
/// on a third of that weekday's dates in its weeks. A trip that ends at a school is a morning run,
/// one that starts there an afternoon run, any other goes by noon. Every visit of a place but the
/// school is a stop of its own, unless they are shared. A trip's block is its route, else its
/// feed's route. Left out: trips without a weekday, repeated by frequency, with fewer than two or
/// more than 100 stops, or without times at their ends, and routes of more than 50 runs.
[[nodiscard]] SchoolRuns schoolRunsOf(const transit::Feed& feed, const SchoolTripOptions& options);

/// The trip that a run was made of, from its comment; empty where it was made otherwise.
[[nodiscard]] std::string tripOfComment(std::string_view comment);

}  // namespace tools::district
