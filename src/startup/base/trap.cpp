#include "startup/base/trap.h"

#include <fmt/format.h>

#include "platform/store/database.h"
#include "startup/base/mdlDBConnection.h"

namespace startup {

void report(std::string_view procedure, std::string_view module) {
    if (!gErrorHandling || !gErrHandler) {
        throw;
    }
    gErrHandler->CurrentOperation(fmt::format("{} of Module: {}.", procedure, module));
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
    if (DoorOfForm::isOpen() && lockedElsewhere()) {
        throw;
    }
    report(procedure, module);
    ShutDown(1);
}

}  // namespace startup
