#pragma once

#include <string>

#include "platform/ado/connection.h"
#include "runedit/map/workfiles.h"

namespace runedit {

/// Whose answer "RunDone.txt" is.
enum class RunAnswer {
    Missing,        ///< there is no such file
    ForThisRun,     ///< it names the run
    ForAnotherRun,  ///< it names another run of the database
    Unnamed,        ///< it names none: whatever else stands in it
};

/// Looks at the answer that stands in the program folder, for the run with that id.
[[nodiscard]] RunAnswer lookForAnswer(const std::string& run, const WorkFiles& files,
                                      ado::Connection& routing);

/// Whether it is another run's and was written so short a time ago that whoever waits for it, and
/// looks every second, may not have seen it.
[[nodiscard]] bool isUnreadAnswerOfAnother(const std::string& run, const WorkFiles& files,
                                           ado::Connection& routing);

}  // namespace runedit
