#pragma once

#include <string>
#include <vector>

#include "runedit/validation/checkedrun.h"
#include "runedit/validation/finding.h"
#include "runedit/validation/stoprows.h"

namespace runedit {

inline StopRow stopOf(const std::string& stopId) {
    StopRow stop;
    stop.stopId = stopId;
    stop.run = "R";
    return stop;
}

/// Run "R" with that vehicle type, and vehicle where there is one.
inline CheckedRun runOf(const std::string& vehType, const std::string& vehicle) {
    CheckedRun run;
    run.run = "R";
    run.vehType = vehType;
    run.vehicle = vehicle;
    return run;
}

inline std::vector<std::string> messagesOf(const Findings& findings) {
    std::vector<std::string> messages;
    for (const Finding& finding : findings) {
        messages.push_back(finding.message);
    }
    return messages;
}

}  // namespace runedit
