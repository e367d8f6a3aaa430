#pragma once

#include <string>
#include <string_view>

#include "reports/base/picture.h"

namespace reports {

/// A picture as a mark within a page of HTML; `told` says it for those who do not see it.
[[nodiscard]] std::string svgOf(const Picture& picture, std::string_view told);

/// A text between marks or in a quoted attribute.
[[nodiscard]] std::string htmlText(std::string_view text);

}  // namespace reports
