#pragma once

#include <string>

namespace forms {
class Form;
}

namespace reports {

/// Shows a report of one stored run over a form, with what the planner chose for that report last.
/// A user without the permission is told, a run that is gone, too.
void previewRun(forms::Form& over, const std::string& report, const std::string& run);

}  // namespace reports
