#pragma once

#include <QString>
#include <vector>

#include "reports/catalog/preparation.h"

namespace reports {

/// What a planner chose for a report, kept with the places of the windows.
struct Choices {
    Options options;
    std::vector<SortField> sort;
    QString changedSince;  ///< as it was typed
};

/// The last ones; `sort` where none were made for this report. What the report no longer allows is
/// left out.
[[nodiscard]] Choices recallChoices(const Report& report, const std::vector<SortField>& sort);
void rememberChoices(const Report& report, const Choices& choices);

/// The paper of the desktop's country.
[[nodiscard]] Paper usualPaper();

}  // namespace reports
