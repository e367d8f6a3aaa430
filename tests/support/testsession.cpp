#include "support/testsession.h"

#include "startup/COSInfo.h"
#include "startup/mdlDBConnection.h"
#include "startup/mdlErrorHandler.h"
#include "startup/session.h"

namespace support {

namespace {

void emptyGlobals() {
    using namespace startup;
    gCommandLine = gIniFile = gDataPath = gProgPath = gVIREOPath = gReportPath = gMapSoftware = {};
    RunSearchSQL = RunSearchSchoolSQL = SelectedRun = {};
    gErrorHandling = gSecurityOn = RefreshRunList = false;
    gErrHandler.reset();
    gPermCount = 0;
    gPermCode.clear();
    gPermAuthority.clear();
    RunRefreshTime = TotSavedRuns = 0;
}

}  // namespace

TestSession::TestSession() { emptyGlobals(); }

TestSession::~TestSession() {
    startup::closeConnections();
    startup::COSInfo::useFolder({});
    emptyGlobals();
}

void TestSession::start(const std::string& configFolder) const {
    startup::COSInfo::useFolder(configFolder);
    startup::SetPaths();
    startup::SetErrorHandling();
    startup::OpenRoutingDatabase();
}

}  // namespace support
