#include "platform/forms/formregistry.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/mdlErrorHandler.h"
#include "startup/base/trap.h"
#include "startup/desktop/desktopprogram.h"
#include "workfiles/DelWrkFiles.h"

namespace {

void removeWorkFiles() {
    startup::SetPaths();
    startup::SetErrorHandling();
    startup::trapped("Main", "DelWrkFiles", [] {
        forms::FormRegistry::instance().make<workfiles::DelWrkFiles>().showForm();
    });
}

}  // namespace

// DelWrkFiles.exe: removes the work files of the runs in the request list, and ends.
int main(int argc, char** argv) {
    startup::applicationInfo().title = "DelWrkFiles";
    return startup::runOnDesktop(argc, argv, "delwrkfiles", removeWorkFiles);
}
