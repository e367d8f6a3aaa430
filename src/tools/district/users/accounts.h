#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/password/password.h"
#include "tools/district/users/permissions.h"

namespace tools::district {

/// A user of the suite and what the user may do in this program.
struct Account {
    std::string id;  ///< as the suite spells it
    password::Stored password = password::Stored::None;
    std::vector<std::string> granted = {};  ///< codes

    /// Whether it is the built-in account while it is never asked.
    [[nodiscard]] bool mayDoEverything() const;
    [[nodiscard]] bool may(const Permission& permission) const;
};

/// Every user, by identifier.
[[nodiscard]] std::vector<Account> readAccounts(ado::Connection& users);

/// Why nobody could log on under that identifier, in a sentence; empty where it can be one.
[[nodiscard]] std::string whyNoIdentifier(std::string_view id);

// Each changes all that it says or nothing. `id` is an identifier as the suite spells it. They
// raise store::StoreError.

/// Adds a user without a password; raises it for an identifier that is taken.
void addAccount(ado::Connection& users, const std::string& id,
                const std::vector<Permission>& granted);

/// Removes a user with the user's permissions in all programs of the suite; returns how many of
/// those there were.
std::int64_t removeAccount(ado::Connection& users, const std::string& id);

void grant(ado::Connection& users, const std::string& id,
           const std::vector<Permission>& permissions);
void revoke(ado::Connection& users, const std::string& id,
            const std::vector<Permission>& permissions);

}  // namespace tools::district
