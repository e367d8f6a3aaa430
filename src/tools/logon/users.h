#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"

namespace tools::logon {

/// A user of the suite.
struct User {
    std::string id;        ///< as the suite spells it
    std::string password;  ///< as it is stored; see platform/password
};

/// Every user, by identifier.
[[nodiscard]] std::vector<User> readUsers(ado::Connection& users);

/// The user of that identifier, without regard to letter case and blanks at its ends; null if there
/// is none.
[[nodiscard]] const User* findUser(const std::vector<User>& users, std::string_view id);

/// Gives the user another password; an empty one takes it away. Raises InvalidProcedureCall (5) for
/// a password that cannot be hashed, NoCurrentRecord where the user is gone, store::StoreError.
void setPassword(ado::Connection& users, const std::string& id, const std::string& password);

enum class Verdict {
    Admitted,
    Wrong,       ///< the user or the password; nobody is told which
    Uncheckable  ///< the user's password was set by another program
};

/// Whether somebody may work as that user. A user without a password is always admitted. An unknown
/// user takes as long as a wrong password.
[[nodiscard]] Verdict admit(const User* user, const std::string& password);

/// The seconds before the next attempt after so many wrong ones in a row: 1, 2, 4, up to 30.
[[nodiscard]] int secondsToWait(int wrongInARow);

}  // namespace tools::logon
