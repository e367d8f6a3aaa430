#pragma once

#include <string>
#include <vector>

namespace forms {

/// What the desktop shows of every window's title behind the window's own, message boxes and file
/// dialogs included: "Runs — Four Towns — ANN". A form's windowTitle() stays as it is. Counts for
/// windows that are shown from now on; empty parts are left out.
void endTitlesWith(const std::vector<std::string>& parts);

}  // namespace forms
