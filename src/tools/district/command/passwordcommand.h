#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "tools/district/base/folders.h"

namespace tools::district {

struct PasswordOptions {
    Folders folders;
    std::string user;
    /// Asks on the terminal, twice and unseen; otherwise the first line of `in` is the password.
    bool ask = false;
};

/// Asks on the terminal for a user's new password, twice and unseen; empty for none. Nothing, after
/// a complaint, where it cannot be one. Raises Interrupted.
[[nodiscard]] std::optional<std::string> askPassword(
    const std::string& user, std::ostream& complaints,
    std::string_view hint = "nothing for none; it is not shown");

/// The same, or the first line of `in`, for a user who must have one.
[[nodiscard]] std::optional<std::string> firstPassword(const std::string& user, bool isTyped,
                                                       std::istream& in, std::ostream& complaints);

/// Sets a user's password; an empty one takes it away. Returns whether it did, complaining
/// otherwise. Raises Interrupted, base::RunTimeError, store::StoreError where the file cannot be
/// opened.
bool runPassword(const PasswordOptions& options, std::istream& in, std::ostream& out,
                 std::ostream& complaints);

}  // namespace tools::district
