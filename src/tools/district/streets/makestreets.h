#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/geo/projection.h"
#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

struct StreetsOptions {
    Folders folders;
    std::vector<std::filesystem::path> extracts;
    /// Where the middle of the stops lies, for a district that keeps no centre yet.
    std::optional<geo::Degrees> centre = {};
    /// The district's own address table; otherwise the one that it was given last.
    std::optional<std::filesystem::path> addresses = {};
    double milesAround = 5;  ///< the outermost stops
};

/// A stop that no street is near.
struct FarStop {
    std::string stop;
    std::string description;
    std::optional<double> feet;  ///< nothing: more than a mile
};

struct StreetsReport {
    std::filesystem::path file;
    std::uintmax_t bytes = 0;
    double miles = 0;
    std::size_t pieces = 0;
    std::size_t crossings = 0;
    std::size_t names = 0;
    std::size_t houses = 0;
    std::size_t turnRules = 0;
    std::size_t turnRulesTaken = 0;
    std::size_t unreachable = 0;
    std::size_t stops = 0;
    std::vector<FarStop> farStops;  ///< the farthest first
    std::vector<std::string> addressFaults;

    [[nodiscard]] std::string text() const;
};

/// Makes the street file of a district beside its databases, keeps the address table there, and
/// writes both settings: what it drives on and where it lies. Until the file is whole nothing is
/// changed. A district without stops or centre gets the middle of the extracts. Raises
/// base::RunTimeError, store::StoreError, Interrupted.
StreetsReport makeStreets(const StreetsOptions& options, Progress& progress);

}  // namespace tools::district
