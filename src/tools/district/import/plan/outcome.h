#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tools::district {

/// What an import does in one table.
struct TableOutcome {
    static constexpr std::size_t MostCases = 3;

    std::string table;
    std::int64_t added = 0;
    std::int64_t changed = 0;
    std::int64_t same = 0;
    std::int64_t left = 0;  ///< would change a run that planners have changed
    std::int64_t removed = 0;
    std::vector<std::string> cases;  ///< the first that are added, changed or removed

    [[nodiscard]] bool hasChanges() const { return added + changed + removed > 0; }
    void tell(std::string what) {
        if (cases.size() < MostCases) {
            cases.push_back(std::move(what));
        }
    }
};

/// A line that is not imported.
struct Rejection {
    std::string file;
    std::int64_t line = 0;
    std::string column;  ///< as the file calls it, or the character where reading failed
    std::string reason;
    std::string text;  ///< the whole line as separated values
};

/// What an import would do, or has done.
struct ImportOutcome {
    static constexpr std::size_t MostTold = 5;

    std::vector<TableOutcome> tables;
    std::int64_t refused = 0;
    std::vector<Rejection> rejections;    ///< the first ones
    std::vector<std::string> editedRuns;  ///< left as they are
    std::vector<std::string> remarks;     ///< charsets, columns that are left out

    [[nodiscard]] bool hasChanges() const {
        for (const TableOutcome& one : tables) {
            if (one.hasChanges()) {
                return true;
            }
        }
        return false;
    }
};

}  // namespace tools::district
