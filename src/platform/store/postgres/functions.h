#pragma once

#include <string_view>

namespace store::postgres {

/// The statements that prepare an empty database for a district: its types, how texts compare, and
/// the functions that translated statements call.
[[nodiscard]] std::string_view functionScript();

}  // namespace store::postgres
