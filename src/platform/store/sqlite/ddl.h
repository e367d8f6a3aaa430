#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/store/base/ddl.h"

namespace store::sqlite {

/// The statement that makes a table with its checks and key. Raises StoreError where the
/// description contradicts itself.
[[nodiscard]] std::string createTableStatement(const Table& table);

/// The statement that adds a column to a table that has rows. Raises StoreError where it has to
/// have a value and no default.
[[nodiscard]] std::string addColumnStatement(const Table& table, const Column& column);

/// The statements that make a table's indexes, its key's apart.
[[nodiscard]] std::vector<std::string> createIndexStatements(const Table& table,
                                                             const std::vector<Index>& indexes);

/// What a declared type stands for, ours and anybody's; the counter is told apart elsewhere.
[[nodiscard]] ColumnKind kindOfDeclaredType(std::string_view type);

}  // namespace store::sqlite
