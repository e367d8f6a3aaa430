#pragma once

#include <iosfwd>
#include <string>

#include "tools/district/base/folders.h"

namespace tools::district {

struct PasswordOptions {
    Folders folders;
    std::string user;
    /// Asks on the terminal, twice and unseen; otherwise the first line of `in` is the password.
    bool ask = false;
};

/// Sets a user's password; an empty one takes it away. Returns whether it did, complaining
/// otherwise. Raises Interrupted, base::RunTimeError, store::StoreError where the file cannot be
/// opened.
bool runPassword(const PasswordOptions& options, std::istream& in, std::ostream& out,
                 std::ostream& complaints);

}  // namespace tools::district
