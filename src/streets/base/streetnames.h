#pragma once

#include <string>
#include <string_view>

namespace streets {

/// A street's name as people say it: "N High St" is "North High Street", "St Clair Ave" is "Saint
/// Clair Avenue". Blanks are single; a letter that is the name itself stays ("N Street").
[[nodiscard]] std::string spelledOut(std::string_view name);

}  // namespace streets
