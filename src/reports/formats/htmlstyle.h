#pragma once

#include <string>

#include "reports/base/content.h"

namespace reports {

/// The style sheet of a report's page: on a screen, light or dark, on a telephone, on paper.
[[nodiscard]] std::string htmlStyle(const Content& content);

}  // namespace reports
