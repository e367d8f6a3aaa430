#include "runsearch/search/runbuttons.h"

namespace runsearch {

void RunButtons::afterRunsFound(const Granted& granted) {
    cmdNew = cmdNew && granted("RTG210");
    Delete = Delete && granted("RTG230");
    ChangeBell = granted("RTG250");
    GroupChange = granted("RTG260");
    PrintIt = granted("RTG270");
    TimeLine = true;
    GroupSolve = true;  // no task code guards it
}

void RunButtons::afterReset() {
    PrintIt = TimeLine = ChangeBell = GroupChange = GroupSolve = false;
}

}  // namespace runsearch
