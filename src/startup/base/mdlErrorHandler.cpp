#include "startup/base/mdlErrorHandler.h"

#include "platform/files/files.h"
#include "startup/base/trap.h"

namespace startup {

void SetErrorHandling() {
    trapped("SetErrorHandling", "mdlErrorHandler", [] {
        gErrHandler = std::make_unique<cErrorHandler>();
        gErrHandler->Destination(gProgPath + files::Separator + "Error.txt");
        gErrHandler->DisplayMsgOnError(true);
    });
}

}  // namespace startup
