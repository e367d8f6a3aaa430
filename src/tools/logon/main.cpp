#include "help/viewer/guidedesk.h"
#include "platform/forms/formregistry.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlErrorHandler.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"
#include "startup/desktop/desktopprogram.h"
#include "startup/desktop/selfdescription.h"
#include "startup/version/districtversion.h"
#include "tools/logon/logonform.h"

namespace {

constexpr std::string_view Help = R"(Usage: Logon.Exe [PROGRAM]

Asks who is to work on the district and starts PROGRAM, TARN where none is named, with the user's
identifier as its command line.

  --help     this text
  --version  the program's version)";

/// Asks who is to work with the program of that name.
void start(const std::string& program) {
    startup::SetPaths();
    startup::SetErrorHandling();
    help::offerGuide();
    startup::trapped("start", "Logon", [&] {
        startup::gcnQDSC =
            startup::GetJetConnection(startup::databasePath(startup::gVIREOPath, "ZBQDSC1.mdb"));
        startup::requireVersion({{data::DatabaseFile::QDSC, *startup::gcnQDSC}});
        forms::FormRegistry::instance().make<tools::logon::LogonForm>(program).showForm();
    });
}

}  // namespace

int main(int argc, char** argv) {
    if (startup::isAnsweredAtOnce(argc, argv, Help)) {
        return 0;
    }
    const std::string program = argc > 1 ? argv[1] : "TARN";
    startup::applicationInfo().title = "Log On";
    return startup::runOnDesktop(argc, argv, "logon", [&] { start(program); });
}
