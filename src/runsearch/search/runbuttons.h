#pragma once

#include <functional>
#include <string_view>

namespace runsearch {

/// Which of the main form's guarded buttons may be used.
struct RunButtons {
    bool cmdNew = true;
    bool Edit = true;
    bool Delete = true;
    bool PrintIt = false;
    bool TimeLine = false;
    bool ChangeBell = false;
    bool GroupChange = false;
    bool GroupSolve = false;

    /// Tells whether a task code is granted.
    using Granted = std::function<bool(std::string_view task)>;

    /// After a search that found runs. New and Delete are only ever taken away here.
    void afterRunsFound(const Granted& granted) {
        cmdNew = cmdNew && granted("RTG210");
        Delete = Delete && granted("RTG230");
        ChangeBell = granted("RTG250");
        GroupChange = granted("RTG260");
        PrintIt = granted("RTG270");
        TimeLine = true;
        GroupSolve = true;  // no task code guards it
    }
    /// After a reset; New, Edit and Delete stay as they are.
    void afterReset() { PrintIt = TimeLine = ChangeBell = GroupChange = GroupSolve = false; }
};

}  // namespace runsearch
