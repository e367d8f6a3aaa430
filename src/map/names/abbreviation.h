#pragma once

#include <string>
#include <string_view>

namespace map {

/// "North High Street" as "N High St". A name of one word stays whole.
[[nodiscard]] std::string abbreviated(std::string_view name);

}  // namespace map
