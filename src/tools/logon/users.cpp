#include "tools/logon/users.h"

#include <algorithm>

#include "platform/ado/recordset.h"
#include "platform/base/text.h"
#include "platform/password/password.h"

namespace tools::logon {

namespace {

bool isNamed(std::string_view id, std::string_view name) {
    return base::equalsNoCase(base::trim(id), base::trim(name));
}

}  // namespace

std::vector<User> readUsers(ado::Connection& users) {
    return ado::readAll("SELECT QDSCU.* FROM QDSCU ORDER BY QDSCU.QDSC1", users, [](auto& rows) {
        return User{rows["QDSC1"].asText(), std::string(rows["QDSC2"].textView())};
    });
}

const User* findUser(const std::vector<User>& users, std::string_view id) {
    const auto found = std::find_if(users.begin(), users.end(),
                                    [&](const User& user) { return isNamed(user.id, id); });
    return found == users.end() ? nullptr : &*found;
}

void setPassword(ado::Connection& users, const std::string& id, const std::string& password) {
    const base::Value stored =
        password.empty() ? base::Value() : base::Value(password::hashed(password));
    ado::Recordset rows("SELECT QDSCU.* FROM QDSCU", users);
    while (!isNamed(rows["QDSC1"].asText(), id)) {
        rows.MoveNext();
    }
    rows["QDSC2"].Value(stored);
    rows.Update();
}

Verdict admit(const User* user, const std::string& password) {
    if (user == nullptr) {
        static_cast<void>(password::matches(password, password::unknownPassword()));
        return Verdict::Wrong;
    }
    switch (password::kindOf(user->password)) {
        case password::Stored::None:
            return Verdict::Admitted;
        case password::Stored::Foreign:
            return Verdict::Uncheckable;
        case password::Stored::Hash:
            break;
    }
    return password::matches(password, user->password) ? Verdict::Admitted : Verdict::Wrong;
}

int secondsToWait(int wrongInARow) {
    constexpr int Longest = 30;
    int seconds = wrongInARow > 0 ? 1 : 0;
    for (int i = 1; i < wrongInARow && seconds < Longest; ++i) {
        seconds *= 2;
    }
    return std::min(seconds, Longest);
}

}  // namespace tools::logon
