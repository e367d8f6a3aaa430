#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/jet/ast.h"

namespace jet {

/// Which column names of a SELECT's tables need no table in front of them: shorter statements are
/// prepared faster.
class ColumnNames {
public:
    explicit ColumnNames(const std::vector<Source>& sources);

    /// Whether no two tables have a column of that name. May say no where they have not.
    [[nodiscard]] bool unique(std::string_view name) const;

private:
    struct Slot {
        std::uint64_t hash = 0;
        int count = 0;
    };
    [[nodiscard]] std::size_t slotOf(std::uint64_t hash) const;

    std::vector<Slot> slots_;  // a power of two, at most half full; empty for one table
};

}  // namespace jet
