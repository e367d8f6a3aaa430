#pragma once

#include <cstddef>
#include <vector>

#include "streets/base/streetmap.h"
#include "tools/extract/build/pieces.h"
#include "tools/extract/read/extract.h"

namespace tools::extract {

struct TurnsTaken {
    std::vector<streets::TurnRule> rules;
    std::size_t taken = 0;    ///< rules of the extract
    std::size_t outside = 0;  ///< about streets that the extract lacks or no bus drives
    std::size_t refused =
        0;  ///< that name no one crossing, or a way that rules for turns cannot say
};

/// The rules of an extract as turns at nodes. One over a street between two crossings is taken
/// where that comes to the same: where nothing else leads into that street, or out of it.
[[nodiscard]] TurnsTaken turnRulesOf(const Extract& extract, const CutStreets& cut);

}  // namespace tools::extract
