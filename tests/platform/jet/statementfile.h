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

/// Steps that belong together: run one after another, then undone.
using Block = std::vector<Step>;

/// How a test's parameter shows itself.
inline void PrintTo(const Step& step, std::ostream* out) { *out << step.sql; }

/// The file's statements; its first lines tell how it is written.
[[nodiscard]] std::vector<Block> readStatements();

}  // namespace jet::testing
