#pragma once

#include "reports/selection/selectionintake.h"

namespace runsearch {

/// Hands the report selection form what the reports of a search are, and shows it.
void offerSearchReports(reports::SelectionIntake& form);

}  // namespace runsearch
