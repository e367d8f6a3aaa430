#pragma once

#include <set>
#include <string>
#include <string_view>

#include "platform/store/base/database.h"

namespace tools::district {

/// The role of the server that lets planners change rows and nothing else.
inline constexpr std::string_view PlannersRole = "vireo_planner";

/// What the role of a user is called on the server.
[[nodiscard]] std::string roleOf(std::string_view user);

/// The roles that are planners of the district. Raises store::StoreError.
[[nodiscard]] std::set<std::string> plannersIn(store::Database& district);

/// Makes a role that may log on, without a password, or takes the one that is there, and makes it a
/// planner. Raises base::RunTimeError where this account may not, or the server has no planners.
void makePlanner(store::Database& district, const std::string& role);

}  // namespace tools::district
