#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "tools/district/command/answer.h"

namespace tools::district {

struct SqlOptions {
    std::string file;
    /// The statement; without it each line of `in` is one.
    std::optional<std::string> statement = {};
    /// Only say whether each statement is understood.
    bool onlyCheck = false;
    /// Told instead of tables: "statements", each with "columns" and "rows", or "changed", or
    /// "understood" and "position". Values keep their kinds; dates are texts.
    Result result = nullptr;
};

/// Runs or checks statements of the program's own dialect on a database file; a file "routing.mdb"
/// sees the vehicle and staff tables of its district too. Returns whether all went well; stops at
/// the first statement that fails, while a check goes on to the end. Raises store::StoreError where
/// the file cannot be opened.
bool runSql(const SqlOptions& options, std::istream& in, std::ostream& out,
            std::ostream& complaints);

}  // namespace tools::district
