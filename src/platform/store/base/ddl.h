#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/store/base/schema.h"

namespace store {

/// A name as SQL text: "RUN", quotes in it doubled.
[[nodiscard]] std::string quoted(std::string_view name);

/// The same of several, with commas between them.
[[nodiscard]] std::string quotedList(const std::vector<std::string>& names);

/// Raises StoreError where the key names no column, or a counter is not the only key.
void requireSoundKey(const Table& table);

/// Whether a single whole number is the key.
[[nodiscard]] bool hasWholeKey(const Table& table);

/// Whether a column that old rows do not have can be added to them. Raises StoreError where it has
/// to have a value and no default.
void requireAddable(const Table& table, const Column& column);

/// Those of the indexes that the key does not serve already. Raises StoreError where one names no
/// column of the table.
[[nodiscard]] std::vector<Index> besideKey(const Table& table, const std::vector<Index>& indexes);

/// What an index is called: "index_RUN_SCHOOL_BELLTIME".
[[nodiscard]] std::string nameOf(const Index& index, const Table& table);

}  // namespace store
