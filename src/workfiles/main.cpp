#include "platform/forms/formregistry.h"
#include "startup/applicationinfo.h"
#include "startup/desktopprogram.h"
#include "startup/mdlDBConnection.h"
#include "startup/mdlErrorHandler.h"
#include "startup/trap.h"
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
