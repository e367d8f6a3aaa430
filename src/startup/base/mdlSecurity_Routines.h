#pragma once

#include <string>

namespace startup {

/// Loads the user's authority for each permission point from gcnQDSC. True when the user is refused
/// because the database does not know them. Raises "Subscript out of range" (9) where a user has
/// more rows than there are permission points.
bool LoadUserPermissions(const std::string& user);

/// Whether the user may perform the task of that code ("RTG210"). Codes are compared exactly; of
/// several rows for one code the last counts. `tell` shows a message box on refusal.
bool HasAuthority(const std::string& code, bool tell);

}  // namespace startup
