#pragma once

#include <cstddef>

#include "platform/ado/recordset.h"
#include "platform/table/texttable.h"

namespace data {

/// Puts a field of the current row into a list's cell, as the column's kind asks: a Null or blank
/// text becomes one blank, a number that is Null, zero or no number becomes 0, a time stays as it
/// is.
void setCell(table::TextTable& table, std::size_t row, std::size_t column, const ado::Field& field);

}  // namespace data
