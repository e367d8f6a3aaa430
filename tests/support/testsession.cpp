#include "support/testsession.h"

#include "startup/base/COSInfo.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlErrorHandler.h"
#include "startup/base/session.h"

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
