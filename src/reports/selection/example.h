#pragma once

#include <memory>

#include "reports/base/content.h"

namespace reports {

/// Invented rows in the form of a report, enough for a page: what it looks like before there are
/// any runs.
[[nodiscard]] std::unique_ptr<Content> exampleOf(const Report& report, const Options& options);

}  // namespace reports
