#pragma once

#include "tools/district/import/apply/tablewriter.h"
#include "tools/district/import/plan/comparison.h"

namespace tools::district {

/// What follows from the rows that an import has written, in the same transactions: first and last
/// stop, number of stops and students and missing times of the runs whose stops have changed, a row
/// of the run log for each run, and the dead-head that must be calculated anew.
void finishRuns(Comparison& comparison, const ImportOutcome& outcome, const OpenDistrict& district,
                const ImportAudit& audit);

}  // namespace tools::district
