#pragma once

#include <string>
#include <vector>

#include "platform/base/ports.h"

namespace tools::launcher {

/// What came of a command.
struct CommandOutcome {
    bool isDone = false;
    std::string says;  ///< what it told, or why it failed; empty where the user stopped it
};

/// Runs `vireo-district` with these words and that input, while `progress` lets the form live and
/// the user stop it. A command that is stopped or fails leaves nothing half done.
[[nodiscard]] CommandOutcome runDistrictCommand(const std::vector<std::string>& words,
                                                const std::string& input,
                                                base::ProgressPort& progress);

}  // namespace tools::launcher
