#pragma once

#include <string>

#include <fmt/format.h>

namespace bench {

/// The statement that adds `rows` rows to a table at once; `values` may use i, which is 1, 2, … in
/// them.
inline std::string insertMany(const std::string& table, int rows, const std::string& columns,
                              const std::string& values) {
    return fmt::format(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {})"
        " INSERT INTO {} ({}) SELECT {} FROM n",
        rows, table, columns, values);
}

}  // namespace bench
