#include "startup/base/session.h"

#include "startup/base/mdlDBConnection.h"

namespace startup {

void resetSession() {
    closeConnections();
    gCommandLine = gIniFile = gDataPath = gProgPath = gVIREOPath = gReportPath = gMapSoftware = {};
    RunSearchSQL = RunSearchSchoolSQL = SelectedRun = {};
    gErrorHandling = gSecurityOn = RefreshRunList = false;
    gErrHandler.reset();
    gPermCount = 0;
    gPermCode.clear();
    gPermAuthority.clear();
    RunRefreshTime = TotSavedRuns = 0;
}

}  // namespace startup
