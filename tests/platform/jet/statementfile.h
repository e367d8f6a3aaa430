#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace jet::testing {

/// One statement of statements.txt and what is expected of it.
struct Step {
    int line = 0;  ///< 1-based, in the file
    std::string sql;
    std::string translation;        ///< empty where it is not compared
    std::vector<std::string> rows;  ///< as District::run gives them
    bool comparesRows = false;
    int rowCount = -1;  ///< -1 where only the rows themselves are compared
    std::string error;  ///< how the description begins; empty where none is expected
    std::size_t position = 0;
};

/// How a test's parameter shows itself.
inline void PrintTo(const Step& step, std::ostream* out) { *out << step.sql; }

/// Steps that belong together: run one after another, then undone.
using Block = std::vector<Step>;

/// The file's blocks, parted by blank lines. A line begins with what it is: `?` a statement, `>`
/// its translation, `=` a row, `=none` no row, `#` the number of rows, `!` the position and the
/// beginning of the error, `--` a remark.
[[nodiscard]] std::vector<Block> readStatements(const std::string& path);

}  // namespace jet::testing
