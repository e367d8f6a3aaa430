#pragma once

#include <vector>

#include "reports/base/report.h"

namespace reports {

/// How much of the width each column takes, as parts of 1: by its own width, and what is left over
/// or lacking on the paper by the columns that may grow.
[[nodiscard]] std::vector<double> columnShares(const Report& report, const Options& options);

/// The width between the margins, in points.
[[nodiscard]] double textWidth(const Options& options);

/// The margins, in points.
inline constexpr double Margin = 45;

}  // namespace reports
