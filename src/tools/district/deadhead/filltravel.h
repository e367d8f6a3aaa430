#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/district/base/folders.h"
#include "tools/district/base/progress.h"

namespace tools::district {

struct TravelOptions {
    Folders folders;
    bool all = false;    ///< also what no route needs: see neededWays
    bool again = false;  ///< renews what an earlier call has worked out
};

struct TravelReport {
    std::size_t routes = 0;
    std::size_t known = 0;  ///< pairs of stops that stood there and stay
    std::size_t added = 0;
    std::size_t renewed = 0;
    std::vector<std::string> open;  ///< sentences about pairs and stops without a way

    [[nodiscard]] std::string text() const;
};

/// Adds the travel between stops that a district's dead-head asks for and its table lacks, by the
/// streets that the district drives on. What stands in the table stays, in either direction; with
/// `again` those rows are renewed that an earlier call has added and nobody has changed since: they
/// are listed in "computed-travel.csv" beside the databases. A pair that is needed in both
/// directions gets their mean, because one row serves both. Nothing is written until all is worked
/// out, then a transaction for each batch; a calculation of the dead-head becomes due. Raises
/// base::RunTimeError, store::StoreError, Interrupted.
TravelReport fillTravel(const TravelOptions& options, Progress& progress);

}  // namespace tools::district
