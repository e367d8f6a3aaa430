#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"

namespace runedit {

/// One breach of a rule at one stop.
struct Finding {
    std::string run;      ///< the run as the stop's record names it
    std::string message;  ///< what the planner reads, as it is recorded
};

using Findings = std::vector<Finding>;

/// The text of a message box: every message, trimmed, each behind the separator.
[[nodiscard]] std::string accumulated(const Findings& findings, std::string_view separator);
/// The same text for reading: each message on a line of its own, behind the sign of its separator.
[[nodiscard]] std::string onLines(std::string_view accumulated, std::string_view separator);

/// Records it among the warnings of its run. Nobody has the row before it is asked for, so that in
/// a unit that writes together it may wait for the commit.
void addRunWarning(ado::Connection& routing, std::string_view type, const Finding& finding);

}  // namespace runedit
