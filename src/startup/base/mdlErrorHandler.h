#pragma once

namespace startup {

/// Creates gErrHandler, which logs to "Error.txt" in gProgPath and shows its messages.
void SetErrorHandling();

}  // namespace startup
