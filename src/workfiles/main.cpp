#include "help/viewer/guidedesk.h"
#include "platform/forms/formregistry.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlErrorHandler.h"
#include "startup/base/trap.h"
#include "startup/desktop/desktopprogram.h"
#include "startup/desktop/selfdescription.h"
#include "workfiles/DelWrkFiles.h"

namespace {

constexpr std::string_view Help = R"(Usage: DelWrkFiles.exe

Removes the work files of the runs in the map's request list, and ends. Group Solve starts it.

  --help     this text
  --version  the program's version)";

void removeWorkFiles() {
    startup::SetPaths();
    startup::SetErrorHandling();
    help::offerGuide();
    startup::trapped("Main", "DelWrkFiles", [] {
        forms::FormRegistry::instance().make<workfiles::DelWrkFiles>().showForm();
    });
}

}  // namespace

int main(int argc, char** argv) {
    if (startup::isAnsweredAtOnce(argc, argv, Help)) {
        return 0;
    }
    startup::applicationInfo().title = "DelWrkFiles";
    return startup::runOnDesktop(argc, argv, "delwrkfiles", removeWorkFiles);
}
