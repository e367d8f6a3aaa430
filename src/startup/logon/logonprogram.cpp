#include "startup/logon/logonprogram.h"

#include "platform/process/process.h"
#include "startup/base/session.h"

namespace startup {

void startLogonProgram() { process::host().start(gProgPath + "Logon.Exe", {"TARN"}); }

}  // namespace startup
