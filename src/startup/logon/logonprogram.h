#pragma once

namespace startup {

/// Starts the suite's logon program, told to start this one for whoever logs on: "Logon.Exe" in the
/// program folder. Raises what process::ProcessHost::start() raises.
void startLogonProgram();

}  // namespace startup
