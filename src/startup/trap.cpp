#include "startup/trap.h"

#include <fmt/format.h>

#include "startup/mdlDBConnection.h"

namespace startup {

namespace {

// The one switch between reporting and ending: the main form outlives the errors of its handlers.
bool endsProgram(std::string_view module) { return module != "frmTarn"; }

void report(std::string_view procedure, std::string_view module) {
    gErrHandler->CurrentOperation(fmt::format("{} of Module: {}.", procedure, module));
    gErrHandler->HandleError();
}

}  // namespace

void reportTrapped(std::string_view procedure, std::string_view module) {
    report(procedure, module);
    if (endsProgram(module)) {
        ShutDown(1);
    }
}

void reportTyped(std::string_view procedure, std::string_view module) {
    if (!gErrorHandling || !gErrHandler) {
        throw;
    }
    report(procedure, module);
}

}  // namespace startup
