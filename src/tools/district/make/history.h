#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tools/district/travel/model.h"

namespace tools::district {

/// A row of RUNLOG.
struct LogEntry {
    const Run* run = nullptr;
    const Visit* visit = nullptr;
    base::Date date;
    std::string_view user;
    int activity = 0;
    std::string description;
};

/// Tells `each` the district's `logEntries` entries, oldest first, spread over the three school
/// years before `asOf`: stops added, removed, moved and merged, in the words that the program's own
/// forms write.
void tellHistory(const District& district, const std::function<void(const LogEntry&)>& each);

}  // namespace tools::district
