#pragma once

#include <string>

#include "runsearch/search/runsearchquery.h"

namespace runsearch {

/// What was looked for, as a planner says it: "trip type AM or PM; start from 7:00 AM to 8:00 AM";
/// "all runs" without a criterion. Schools by their names.
[[nodiscard]] std::string inWords(const RunSearchCriteria& criteria);

}  // namespace runsearch
