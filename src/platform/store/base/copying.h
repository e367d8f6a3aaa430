#pragma once

#include <cstdint>
#include <string>

#include "platform/store/base/database.h"

namespace store {

/// Copies all rows of a table into the empty one of the same name, in the order in which they were
/// added; returns how many. Only inside a transaction of `to`. Raises StoreError.
std::int64_t copyRows(Database& from, const Table& table, Database& to);

/// Compares a table of two databases row by row and cell by cell: the first difference in plain
/// words, empty where there is none. Raises StoreError.
[[nodiscard]] std::string differenceOf(Database& one, Database& other, const Table& table);

}  // namespace store
