#include <algorithm>
#include <array>

#include "platform/base/ports.h"
#include "reports/selection/runreport.h"
#include "runedit/editor/Run.h"

#include "ui_Run.h"

namespace runedit {

constexpr auto NotSavedTitle = "Run Not Saved";
constexpr auto StoredIsShown =
    "You have changed this run and not saved it.  The report shows the run as it is saved.\n\n"
    "OK - show the report.\n"
    "Cancel - go on editing.";

void Run::PrintStops_Click() { printReport("run-stops"); }

/// In the style that the list of directions shows.
void Run::PrintDir_Click() {
    constexpr std::array Styles{"directions", "directions-brief", "directions-very-brief"};
    const auto style = static_cast<std::size_t>(std::max(ui_->cmbDirType->currentIndex(), 0));
    printReport(Styles.at(style));
}

void Run::PrintOrg_Click() { printReport("directions-original"); }

void Run::PrintWarn_Click() { printReport("warnings-by-run"); }

void Run::printReport(const std::string& report) {
    const bool isMeant =
        !boxes_->areTouched() || base::MsgBox(StoredIsShown, NotSavedTitle, base::MsgIcon::Question,
                                              base::MsgButtons::OkCancel) == base::MsgAnswer::Ok;
    if (!isMeant) {
        return;
    }
    if (!storedRun()) {
        return tellNotFound(run());
    }
    reports::previewRun(*this, report, run());
}

}  // namespace runedit
