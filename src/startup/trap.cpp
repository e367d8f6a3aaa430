#include "startup/trap.h"

#include <fmt/format.h>

#include "startup/mdlDBConnection.h"

namespace startup {

namespace {

// The one switch between reporting and ending: the main form outlives the errors of its handlers.
bool endsProgram(std::string_view module) { return module != "frmTarn"; }

}  // namespace

void reportTrapped(std::string_view procedure, std::string_view module) {
    gErrHandler->CurrentOperation(fmt::format("{} of Module: {}.", procedure, module));
    gErrHandler->HandleError();
    if (endsProgram(module)) {
        ShutDown(1);
    }
}

}  // namespace startup
