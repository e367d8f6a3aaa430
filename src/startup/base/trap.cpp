#include "startup/base/trap.h"

#include <fmt/format.h>

#include "platform/store/base/database.h"
#include "startup/base/mdlDBConnection.h"

namespace startup {

std::string operationName(std::string_view procedure, std::string_view module) {
    return fmt::format("{} of Module: {}.", procedure, module);
}

void report(std::string_view procedure, std::string_view module, AfterError afterError) {
    if (!gErrorHandling || !gErrHandler) {
        throw;
    }
    gErrHandler->CurrentOperation(operationName(procedure, module));
    gErrHandler->endsProgram(afterError == AfterError::ProgramEnds);
    gErrHandler->HandleError();
}

bool lockedElsewhere() {
    try {
        throw;
    } catch (const store::StoreError& error) {
        return error.fault() == store::Fault::Locked;
    } catch (...) {
        return false;
    }
}

void reportTrapped(std::string_view procedure, std::string_view module) {
    if (DoorOfForm::isOpen() && refusedByStore()) {
        throw;
    }
    report(procedure, module, AfterError::ProgramEnds);
    ShutDown(1);
}

}  // namespace startup
