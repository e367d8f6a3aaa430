#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/district/base/folders.h"
#include "tools/district/command/answer.h"

namespace tools::district {

struct UsersOptions {
    Folders folders;
    /// The words behind the folder: what to do, with whom, and permissions. Lists without any.
    std::vector<std::string> words = {};
    /// Told instead of a table: "users", each with "user", "password" and "permissions".
    Result result = nullptr;
    /// Asks on the terminal; otherwise a new user gets no password, and `password` reads `in`.
    bool ask = false;
};

/// Lists a district's users, adds and removes them, grants, revokes, sets a password. Returns
/// whether it did, complaining otherwise. Raises Misuse, Interrupted, base::RunTimeError,
/// store::StoreError.
bool runUsers(const UsersOptions& options, std::istream& in, std::ostream& out,
              std::ostream& complaints);

}  // namespace tools::district
