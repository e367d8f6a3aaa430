#include "reports/selection/runreport.h"

#include <fmt/format.h>

#include "data/runs/runrow.h"
#include "reports/preview/ReportPreview.h"
#include "reports/selection/choices.h"
#include "startup/base/mdlSecurity_Routines.h"

namespace reports {

void previewRun(forms::Form& over, const std::string& report, const std::string& run) {
    const Report* wanted = reportNamed(report);
    if (wanted == nullptr || !startup::HasAuthority("RTG270", true)) {
        return;
    }
    const Choices choices = recallChoices(*wanted, {});
    const Request request{.report = report,
                          .runs = data::runSql(run),
                          .selection = fmt::format("Run {}", run),
                          .sort = choices.sort,
                          .options = choices.options,
                          .changedSince = {}};
    if (auto prepared = ReportOutput(over, {}).prepare(request)) {
        showPreview(over, std::move(prepared), request, 1);
    }
}

}  // namespace reports
