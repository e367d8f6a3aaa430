#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/store/base/schema.h"

namespace store::postgres {

/// The name of the column that every table without a whole number for its key has besides its own,
/// so that its rows can be told apart.
inline constexpr std::string_view RowNumber = "rowid";

/// The expression that names a row of such a table for good.
[[nodiscard]] std::string rowKeyOf(const Table& table);

/// The statements that make a table with its checks and key. Raises StoreError where the
/// description contradicts itself.
[[nodiscard]] std::vector<std::string> createTableStatements(const Table& table);

/// The statement that adds a column to a table that has rows. Raises StoreError where it has to
/// have a value and no default.
[[nodiscard]] std::string addColumnStatement(const Table& table, const Column& column);

/// The statements that make a table's indexes, its key's apart.
[[nodiscard]] std::vector<std::string> createIndexStatements(const Table& table,
                                                             const std::vector<Index>& indexes);

/// The statement that lets the next row of a table have a number behind all that are there; empty
/// for a table without a counter.
[[nodiscard]] std::string moveCounterStatement(const Table& table);

/// The statements that have each row of a table that is written told on the channel of the watches,
/// see store::announce.
[[nodiscard]] std::vector<std::string> announceStatements(const Table& table,
                                                          const std::string& column);

/// What the server's name of a type stands for.
[[nodiscard]] ColumnKind kindOfType(std::string_view type);

/// A default as the server writes it, as the store's interface has it: "'x'::text" is "'x'".
[[nodiscard]] std::string defaultOf(std::string_view expression);

}  // namespace store::postgres
