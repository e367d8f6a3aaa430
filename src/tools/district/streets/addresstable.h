#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/geo/projection.h"
#include "tools/extract/build/build.h"

namespace tools::district {

/// A district's own addresses: a file of separated values whose first line names the columns
/// number, street, and either x and y (feet of the district) or latitude and longitude.
struct AddressTable {
    std::vector<extract::Address> addresses;
    std::vector<std::string> faults;  ///< a sentence for each line left out
};

/// Raises base::RunTimeError for a file that is missing, lacks a column, or has too many faults.
[[nodiscard]] AddressTable readAddresses(const std::filesystem::path& file,
                                         const geo::Projection& projection);

}  // namespace tools::district
