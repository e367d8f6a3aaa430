#include "support/testsession.h"

#include "startup/COSInfo.h"
#include "startup/applicationinfo.h"
#include "startup/mdlDBConnection.h"
#include "startup/mdlErrorHandler.h"
#include "startup/session.h"

namespace support {

TestSession::TestSession() {
    startup::resetSession();
    startup::applicationInfo().path = programFolder.path();
}

TestSession::~TestSession() {
    startup::resetSession();
    startup::COSInfo::useFolder({});
}

void TestSession::start(const std::string& configFolder) const {
    startup::COSInfo::useFolder(configFolder);
    startup::SetPaths();
    startup::SetErrorHandling();
    startup::OpenRoutingDatabase();
}

}  // namespace support
