#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/base/error.h"
#include "platform/base/value.h"

/// Table files of the dBASE kind, as map programs read them.
namespace dbf {

enum class Kind { Text, Number };

struct Column {
    std::string name;  ///< the format keeps ten characters
    Kind kind = Kind::Text;
    int decimals = 0;  ///< of a number

    friend bool operator==(const Column&, const Column&) = default;
};

struct Table {
    std::vector<Column> columns;
    /// A value for each column; Null where the file holds none.
    std::vector<std::vector<base::Value>> rows;
};

/// Most bytes of a text cell; a longer text is cut.
inline constexpr int MaxTextWidth = 254;

/// "Overflow" (6) of a number that needs more than 20 characters, or is none.
struct TooWide : base::RunTimeError {
    TooWide(std::size_t row, std::size_t column, const std::string& figure);
    std::size_t row;     ///< from 0
    std::size_t column;  ///< from 0
    std::string figure;
};

/// The bytes of a table file. Columns are as wide as their content; texts are kept in the code page
/// 1252, what it does not have becomes "?". Raises TooWide.
[[nodiscard]] std::string bytesOf(const Table& table);

/// The table in a file's bytes. Texts lose the blanks at their ends, deleted rows are left out,
/// columns of other kinds are read as texts. Raises base::RunTimeError for bytes that are no table
/// file.
[[nodiscard]] Table tableIn(std::string_view bytes);

}  // namespace dbf
