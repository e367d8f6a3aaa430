#include "platform/forms/formregistry.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlErrorHandler.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"
#include "startup/desktop/desktopprogram.h"
#include "startup/version/districtversion.h"
#include "tools/logon/logonform.h"

namespace {

/// Asks who is to work with the program of that name.
void start(const std::string& program) {
    startup::SetPaths();
    startup::SetErrorHandling();
    startup::trapped("start", "Logon", [&] {
        startup::gcnQDSC = startup::GetJetConnection(startup::gVIREOPath + "ZBQDSC1.mdb");
        startup::requireVersion({{data::DatabaseFile::QDSC, *startup::gcnQDSC}});
        forms::FormRegistry::instance().make<tools::logon::LogonForm>(program).showForm();
    });
}

}  // namespace

// Logon.Exe PROGRAM: asks for user and password and starts the program with the user's identifier
// as its command line. Without an argument the program is TARN.
int main(int argc, char** argv) {
    const std::string program = argc > 1 ? argv[1] : "TARN";
    startup::applicationInfo().title = "Log On";
    return startup::runOnDesktop(argc, argv, "logon", [&] { start(program); });
}
