#include "startup/base/mdlFileUtilities.h"

#include "platform/files/files.h"
#include "startup/base/session.h"

namespace startup {

void logLine(const std::string& text) { files::appendLine(gProgPath + "log.txt", text); }

}  // namespace startup
