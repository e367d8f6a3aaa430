#pragma once

#include <string>
#include <vector>

#include "data/lookups/lookups.h"
#include "platform/ado/connection.h"
#include "platform/table/texttable.h"

namespace data {

/// The rows of a list, key in the first column; blank texts are one blank.
[[nodiscard]] table::TextTable readList(const ListLookup& lookup, ado::Connection& connection);

/// The rows of a list as a plain combo shows them, one text each: "12:Smith, Ann".
[[nodiscard]] std::vector<std::string> readPlainList(const ListLookup& lookup,
                                                     ado::Connection& connection);

}  // namespace data
