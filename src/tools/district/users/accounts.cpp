#include "tools/district/users/accounts.h"

#include <algorithm>
#include <functional>

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/encoding.h"
#include "platform/base/text.h"
#include "tools/logon/users.h"

namespace tools::district {

namespace {

constexpr std::size_t LongestIdentifier = 50;

void inOne(ado::Connection& users, const std::function<void()>& work) {
    users.BeginTrans();
    try {
        work();
        users.CommitTrans();
    } catch (...) {
        users.RollbackTrans();
        throw;
    }
}

/// A user with more rights than there are permission points could not start the program.
void requirePoint(ado::Connection& users, const Permission& permission) {
    ado::Recordset points(fmt::format("SELECT QDSCPP.* FROM QDSCPP WHERE QDSCPP.PRODUCT='{}' AND "
                                      "QDSCPP.PERM='{}'",
                                      Product, permission.code),
                          users);
    if (points.Eof()) {
        users.Execute(
            fmt::format("INSERT INTO QDSCPP (PRODUCT, PERM, DESCRIPTION) VALUES ('{}', '{}', '{}')",
                        Product, permission.code, permission.description));
    }
}

/// How many rows the user has for the permission; the code is written as the program compares it.
std::int64_t setAuthority(ado::Connection& users, const std::string& id,
                          const Permission& permission, bool authority) {
    return users.Execute(
        fmt::format("UPDATE QDSCU_PP SET QDSCU_PP.Authority={0}, QDSCU_PP.PERM='{1}' WHERE "
                    "QDSCU_PP.PRODUCT='{2}' AND QDSCU_PP.QDSC1='{3}' AND QDSCU_PP.PERM='{1}'",
                    authority ? "True" : "False", permission.code, Product, ado::escaped(id)));
}

void grantInside(ado::Connection& users, const std::string& id,
                 const std::vector<Permission>& permissions) {
    for (const Permission& permission : permissions) {
        requirePoint(users, permission);
        if (setAuthority(users, id, permission, true) == 0) {
            users.Execute(
                fmt::format("INSERT INTO QDSCU_PP (PRODUCT, QDSC1, PERM, Authority) "
                            "VALUES ('{}', '{}', '{}', True)",
                            Product, ado::escaped(id), permission.code));
        }
    }
}

std::vector<std::string> grantedTo(ado::Connection& users, const std::string& id) {
    return ado::readAll(
        fmt::format("SELECT QDSCU_PP.PERM FROM QDSCU_PP WHERE QDSCU_PP.PRODUCT='{}' AND "
                    "QDSCU_PP.QDSC1='{}' AND QDSCU_PP.Authority=True ORDER BY QDSCU_PP.PERM",
                    Product, ado::escaped(id)),
        users, [](ado::Recordset& rows) { return rows["PERM"].asText(); });
}

}  // namespace

bool Account::mayDoEverything() const {
    return id == BuiltInAccount && password == password::Stored::None;
}

bool Account::may(const Permission& permission) const {
    return mayDoEverything() || std::ranges::find(granted, permission.code) != granted.end();
}

std::vector<Account> readAccounts(ado::Connection& users) {
    std::vector<Account> accounts;
    for (const logon::User& user : logon::readUsers(users)) {
        accounts.push_back({user.id, password::kindOf(user.password), grantedTo(users, user.id)});
    }
    return accounts;
}

std::string whyNoIdentifier(std::string_view id) {
    if (base::trim(id).empty()) {
        return "A user's identifier cannot be blank.";
    }
    if (id.size() > LongestIdentifier) {
        return fmt::format("A user's identifier has at most {} bytes.", LongestIdentifier);
    }
    const auto isControl = [](unsigned char c) { return c < ' ' || c == 0x7F; };
    if (std::ranges::any_of(id, isControl) || base::converted(id, "UTF-8", "UTF-8") != id) {
        return "A user's identifier holds letters, digits and signs of UTF-8 only.";
    }
    // It is the program's whole command line, and stands between apostrophes in a statement.
    if (id.find('\'') != std::string_view::npos || id.find("  ") != std::string_view::npos ||
        id.front() == '-') {
        return "A user's identifier has no apostrophe, no hyphen at its beginning, and no two "
               "blanks in a row.";
    }
    return {};
}

void addAccount(ado::Connection& users, const std::string& id,
                const std::vector<Permission>& granted) {
    inOne(users, [&] {
        users.Execute(fmt::format("INSERT INTO QDSCU (QDSC1) VALUES ('{}')", ado::escaped(id)));
        grantInside(users, id, granted);
    });
}

std::int64_t removeAccount(ado::Connection& users, const std::string& id) {
    std::int64_t rights = 0;
    inOne(users, [&] {
        const auto where = fmt::format("QDSC1='{}'", ado::escaped(id));
        rights = users.Execute("DELETE FROM QDSCU_PP WHERE QDSCU_PP." + where);
        users.Execute("DELETE FROM QDSCU WHERE QDSCU." + where);
    });
    return rights;
}

void grant(ado::Connection& users, const std::string& id,
           const std::vector<Permission>& permissions) {
    inOne(users, [&] { grantInside(users, id, permissions); });
}

void revoke(ado::Connection& users, const std::string& id,
            const std::vector<Permission>& permissions) {
    inOne(users, [&] {
        for (const Permission& permission : permissions) {
            setAuthority(users, id, permission, false);
        }
    });
}

}  // namespace tools::district
