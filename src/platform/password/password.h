#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Passwords as the users' table keeps them: a hash made by the system's crypt library, never the
/// password itself.
namespace password {

/// The longest password in bytes.
inline constexpr std::size_t Longest = 511;

enum class Stored {
    None,     ///< empty or blank: no password
    Hash,     ///< a hash that the crypt library knows
    Foreign,  ///< anything else; it is never compared with what somebody types
};

[[nodiscard]] Stored kindOf(std::string_view stored);

/// A yescrypt hash of the password with a salt of its own. Raises InvalidProcedureCall (5) for a
/// password that is empty, longer than Longest or holds a zero byte.
[[nodiscard]] std::string hashed(const std::string& password);

/// Whether the hash is one of this password; false for anything that is no hash.
[[nodiscard]] bool matches(const std::string& password, const std::string& stored);

/// A hash of the usual cost that nobody knows a password for: a check against it takes as long as
/// against a user's own.
[[nodiscard]] const std::string& unknownPassword();

}  // namespace password
